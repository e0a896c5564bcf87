// SPDX-License-Identifier: MIT
#include "QtApplication.h"

#include <QApplication>

namespace {

// For widgets, and for threads of Qt's own.
[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new talvera::test::QtApplication<QApplication>);

} // namespace
