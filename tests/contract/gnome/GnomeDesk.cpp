// SPDX-License-Identifier: MIT
#include "GnomeDesk.h"

#include "eventually.h"

#include <stdexcept>

namespace talvera::test {

GnomeDesk::GnomeDesk() {
    if (!becomes([this] { return view->presence() == ShellView::Presence::Working; }))
        throw std::runtime_error("the extension isn't there");
}

bool GnomeDesk::becomes(const std::function<bool()>& condition) {
    return eventually(condition);
}

bool GnomeDesk::isInFront(pid_t process, bool takesText) {
    return becomes([&] {
        const auto focus = bus->ask(QStringLiteral("Focus"), {});
        return focus && focus->value(1).toInt() == process && focus->value(3).toBool() == takesText &&
               view->focus().process == process;
    });
}

} // namespace talvera::test
