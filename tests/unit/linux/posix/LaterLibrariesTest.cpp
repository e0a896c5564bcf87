// SPDX-License-Identifier: MIT
#include "linux/posix/LaterLibraries.h"

#include <QFile>
#include <QLibrary>

#include <cstdint>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

constexpr int tableSize = 256; // KB

/// A library that has been loaded, and all of whose table has been read.
class LoadedLibrary {
public:
    LoadedLibrary()
        : m_library(QStringLiteral(TALVERA_TEST_LIBRARY)) {
        if (!m_library.load())
            qFatal("%s", qPrintable(m_library.errorString()));
        sum();
    }
    ~LoadedLibrary() { m_library.unload(); }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    std::uint32_t sum() { return resolved<std::uint32_t()>("sumOfTable")(); }
    void remember(int number) { resolved<void(int)>("remember")(number); }
    int remembered() { return resolved<int()>("whatWasRemembered")(); }

    /// How much of it this process has mapped, in KB.
    int resident() const {
        QFile maps(QStringLiteral("/proc/self/smaps"));
        if (!maps.open(QFile::ReadOnly))
            qFatal("the process's own memory can't be looked at");
        int all = 0;
        bool ours = false;
        for (auto line = maps.readLine(); !line.isEmpty(); line = maps.readLine()) {
            if (line.contains('/'))
                ours = line.trimmed().endsWith(QFile::encodeName(m_library.fileName()));
            else if (line.startsWith("VmFlags:")) // the last of each mapping, and others lie in no file
                ours = false;
            else if (ours && line.startsWith("Rss:"))
                all += line.mid(4).trimmed().split(' ').first().toInt();
        }
        return all;
    }

private:
    template <typename Function>
    Function* resolved(const char* name) {
        return reinterpret_cast<Function*>(m_library.resolve(name));
    }

    QLibrary m_library;
};

TEST(LaterLibraries, laterOne_isGivenBackAndWorksOn) {
    const LaterLibraries libraries;
    LoadedLibrary library;
    const auto sum = library.sum();
    library.remember(42);
    ASSERT_GE(library.resident(), tableSize);

    libraries.giveBack();
    EXPECT_LT(library.resident(), tableSize / 2);
    EXPECT_EQ(library.remembered(), 42) << "what it has written is kept";
    EXPECT_EQ(library.sum(), sum);
    EXPECT_GE(library.resident(), tableSize) << "it has come again";

    libraries.giveBack();
    EXPECT_LT(library.resident(), tableSize / 2) << "as often as wanted";
}

TEST(LaterLibraries, earlierOne_staysAsItIs) {
    LoadedLibrary library;
    const LaterLibraries libraries;
    libraries.giveBack();
    EXPECT_GE(library.resident(), tableSize);
}

TEST(LaterLibraries, earlierOneThatIsNamed_isGivenBack) {
    LoadedLibrary library;
    const LaterLibraries libraries({"later_lib"});
    libraries.giveBack();
    EXPECT_LT(library.resident(), tableSize / 2);
    EXPECT_EQ(library.remembered(), 1);
}

TEST(LaterLibraries, oneThatHasGone_isNoConcern) {
    const LaterLibraries libraries;
    std::optional<LoadedLibrary> library(std::in_place);
    library.reset();
    libraries.giveBack();
    library.emplace();
    libraries.giveBack();
    EXPECT_EQ(library->remembered(), 1);
}

} // namespace
