// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

namespace talvera {

/// Whether the kernel has the file in its cache, as far as looks at some dozens of places tell; also where it
/// can't be told.
bool isInMemory(const FileDescriptor& file);

/// Has the file brought into the kernel's cache, unless it is there, by a thread of its own: telling the
/// kernel takes as long as the disk needs to take the orders. Throws std::system_error when there is no
/// thread to give.
void readAhead(FileDescriptor file);

} // namespace talvera
