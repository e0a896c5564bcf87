// SPDX-License-Identifier: MIT
#pragma once

#include "platform/language/InstalledFonts.h"

#include <algorithm>

namespace talvera::test {

/// Fonts that have all characters but those that a test takes away.
class FakeInstalledFonts final : public InstalledFonts {
public:
    QString lacking;

    bool canShow(const QString& text) override {
        return std::none_of(text.begin(), text.end(),
                            [this](QChar character) { return lacking.contains(character); });
    }
};

} // namespace talvera::test
