// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

#include <sys/types.h>

namespace talvera::test {

/// What a screen reader is told of a program over the accessibility bus.
namespace ScreenReader {

struct Element {
    QString role; ///< e.g. "push button"
    QString name;
    QString description;
    QStringList states; ///< e.g. "checked"
    QRect place;        ///< on the screen, in pixels

    bool is(const QString& state) const { return states.contains(state); }
};

/// Everything that is on the screen of the program with this process, parents before their children.
std::vector<Element> read(pid_t program);

/// The first of them with this name and, unless it is empty, this role.
std::optional<Element> find(pid_t program, const QString& role, const QString& name);

} // namespace ScreenReader

} // namespace talvera::test
