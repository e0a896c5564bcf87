// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera::test {

/// Every symbol of the item in the tray, in each size that panels show, as `file`: one sheet on a dark and a
/// light panel, with the colours that are chosen where the panel's is known and where it isn't.
void drawIconSheet(const QString& file);

} // namespace talvera::test
