// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace talvera {

class FileSystem;

/// The SHA-256 of a file's contents in 64 lower-case hex digits. Reads it in blocks of a mebibyte, so that
/// the memory doesn't grow with the file. For any thread but the main one, which it would hold up.
/// `isGivenUp` is asked before each block. Throws PlatformError when the file can't be read, and with
/// std::errc::operation_canceled when it is given up.
QString sha256Hex(FileSystem& files, const QString& path, const std::function<bool()>& isGivenUp);

} // namespace talvera
