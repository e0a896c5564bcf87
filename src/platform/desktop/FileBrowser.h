// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// The desktop's way to look at files. Main thread only.
class FileBrowser {
public:
    virtual ~FileBrowser() = default;

    /// Shows a directory to the user; false when this session has nothing for that.
    virtual bool show(const QString& directory) = 0;
};

} // namespace talvera
