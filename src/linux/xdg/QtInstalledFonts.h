// SPDX-License-Identifier: MIT
#pragma once

#include "platform/language/InstalledFonts.h"

namespace talvera {

/// The fonts as the toolkit picks them for our windows. Needs the application object.
class QtInstalledFonts final : public InstalledFonts {
public:
    bool canShow(const QString& text) override;
};

} // namespace talvera
