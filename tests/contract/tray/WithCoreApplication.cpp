// SPDX-License-Identifier: MIT
#include "QtApplication.h"

#include <QCoreApplication>

namespace {

// Answers from the bus come through an event loop.
[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new talvera::test::QtApplication<QCoreApplication>);

} // namespace
