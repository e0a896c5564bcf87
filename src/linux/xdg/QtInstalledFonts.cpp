// SPDX-License-Identifier: MIT
#include "linux/xdg/QtInstalledFonts.h"

#include <QGlyphRun>
#include <QGuiApplication>
#include <QTextLayout>

#include <algorithm>

namespace talvera {

namespace {

/// What a font shows for a character that it lacks.
constexpr quint32 box = 0;

} // namespace

bool QtInstalledFonts::canShow(const QString& text) {
    QTextLayout layout(text, QGuiApplication::font());
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const auto runs = layout.glyphRuns();
    return std::none_of(runs.begin(), runs.end(),
                        [](const QGlyphRun& run) { return run.glyphIndexes().contains(box); });
}

} // namespace talvera
