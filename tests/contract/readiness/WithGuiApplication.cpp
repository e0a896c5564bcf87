// SPDX-License-Identifier: MIT
#include "QtApplication.h"

#include <QGuiApplication>

namespace {

// For windows.
[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new talvera::test::QtApplication<QGuiApplication>);

} // namespace
