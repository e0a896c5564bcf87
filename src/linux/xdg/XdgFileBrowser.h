// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/FileBrowser.h"

namespace talvera {

/// The file manager that the user has chosen on this desktop.
class XdgFileBrowser final : public FileBrowser {
public:
    bool show(const QString& directory) override;
};

} // namespace talvera
