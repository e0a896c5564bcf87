// SPDX-License-Identifier: MIT
#include "QtApplication.h"
#include "linux/x11/windows/prepareToolkitForX11.h"
#include "views/ViewEngine.h"

#include <QGuiApplication>

namespace {

void prepare() {
    talvera::ViewEngine::prepareProcess();
    talvera::prepareToolkitForX11();
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new talvera::test::QtApplication<QGuiApplication>(prepare));

} // namespace
