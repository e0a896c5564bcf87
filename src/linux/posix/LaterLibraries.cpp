// SPDX-License-Identifier: MIT
#include "linux/posix/LaterLibraries.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <span>

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

namespace talvera {

namespace {

using Library = dl_phdr_info;
using Segment = ElfW(Phdr);

/// None of them can go meanwhile: the loader holds its lock.
void forEachLibrary(std::function<void(const Library&)> visit) {
    ::dl_iterate_phdr(
        [](Library* library, std::size_t, void* visitor) {
            (*static_cast<std::function<void(const Library&)>*>(visitor))(*library);
            return 0;
        },
        &visit);
}

std::span<const Segment> segmentsOf(const Library& library) {
    return {library.dlpi_phdr, library.dlpi_phnum};
}

/// The loader has written addresses into its code, which its file doesn't hold.
bool hasPatchedCode(const Library& library) {
    for (const auto& segment : segmentsOf(library)) {
        if (segment.p_type != PT_DYNAMIC)
            continue;
        // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how the loader tells it
        const auto* entry = reinterpret_cast<const ElfW(Dyn)*>(library.dlpi_addr + segment.p_vaddr);
        for (; entry->d_tag != DT_NULL; ++entry) {
            if (entry->d_tag == DT_TEXTREL || (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_TEXTREL)))
                return true;
        }
    }
    return false;
}

void giveBackPages(const Library& library, const Segment& segment) {
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = library.dlpi_addr + segment.p_vaddr;
    const auto first = (begin + page - 1) / page * page;
    const auto end = (begin + segment.p_memsz) / page * page;
    if (first < end) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how the loader tells it
        ::madvise(reinterpret_cast<void*>(first), end - first, MADV_DONTNEED);
    }
}

} // namespace

LaterLibraries::LaterLibraries(const std::vector<std::string>& others) {
    forEachLibrary([&](const Library& library) {
        const auto name = std::filesystem::path(library.dlpi_name).filename().string();
        const auto isIt = [&name](const std::string& other) { return name.starts_with(other); };
        if (!std::any_of(others.begin(), others.end(), isIt))
            m_earlier.insert(library.dlpi_addr);
    });
}

void LaterLibraries::giveBack() const {
    forEachLibrary([this](const Library& library) {
        if (m_earlier.contains(library.dlpi_addr) || hasPatchedCode(library))
            return;
        for (const auto& segment : segmentsOf(library)) {
            if (segment.p_type == PT_LOAD && !(segment.p_flags & PF_W))
                giveBackPages(library, segment);
        }
    });
}

} // namespace talvera
