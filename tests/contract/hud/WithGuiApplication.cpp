// SPDX-License-Identifier: MIT
#include "QtApplication.h"
#include "views/ViewEngine.h"

#include <QGuiApplication>

namespace {

void prepare() {
    talvera::ViewEngine::prepareProcess();
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new talvera::test::QtApplication<QGuiApplication>(prepare));

} // namespace
