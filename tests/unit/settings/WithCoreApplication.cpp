// SPDX-License-Identifier: MIT
#include "QtApplication.h"

#include <QCoreApplication>

namespace {

const auto* const environment =
    testing::AddGlobalTestEnvironment(new talvera::test::QtApplication<QCoreApplication>);

} // namespace
