// SPDX-License-Identifier: MIT
#include "support/PrivateProgram.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace talvera::bench {

namespace {

namespace fs = std::filesystem;

/// No symbolic link: the program finds its resources by where it lies itself.
void place(const fs::path& file, const fs::path& where) {
    std::error_code otherFileSystem;
    fs::create_hard_link(file, where, otherFileSystem);
    if (otherFileSystem)
        fs::copy_file(file, where);
}

} // namespace

PrivateProgram::PrivateProgram(const QString& text) {
    if (!m_directory.isValid())
        throw std::runtime_error("no temporary directory");
    const fs::path built = TALVERA_PROGRAM;
    const fs::path directory = m_directory.path().toStdString();
    fs::create_directory(directory / "Resources");
    place(built, directory / built.filename());
    place(built.parent_path() / "talvera-x11-companion", directory / "talvera-x11-companion");
    for (const auto& resource : fs::directory_iterator(built.parent_path() / "Resources"))
        fs::create_symlink(resource.path(), directory / "Resources" / resource.path().filename());
    fs::remove(recogniser().toStdString());
    place(built.parent_path() / "instant-recogniser", recogniser().toStdString());
    std::ofstream(directory / "Resources" / "text") << text.toStdString();
}

} // namespace talvera::bench
