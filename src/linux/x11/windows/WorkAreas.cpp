// SPDX-License-Identifier: MIT
#include "linux/x11/windows/WorkAreas.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace talvera {

namespace {

constexpr std::uint32_t largest = 1 << 16; ///< no screen is larger; what windows tell may be nonsense

int bounded(std::uint32_t value) {
    return int(std::min(value, largest));
}

QRect areaOf(const Strut& strut, const QSize& screen) {
    const int length = strut.end - strut.start + 1;
    switch (strut.edge) {
    case Strut::Left:
        return {0, strut.start, strut.size, length};
    case Strut::Right:
        return {screen.width() - strut.size, strut.start, strut.size, length};
    case Strut::Top:
        return {strut.start, 0, length, strut.size};
    case Strut::Bottom:
        return {strut.start, screen.height() - strut.size, length, strut.size};
    }
    Q_UNREACHABLE();
}

} // namespace

std::vector<Strut> strutsOf(const std::vector<std::uint32_t>& property) {
    std::vector<Strut> struts;
    if (property.size() != 4 && property.size() != 12)
        return struts;
    for (int edge = 0; edge < 4; ++edge) {
        const int size = bounded(property[edge]);
        if (size == 0)
            continue;
        Strut strut{Strut::Edge(edge), size, 0, int(largest)};
        if (property.size() == 12) {
            strut.start = bounded(property[4 + 2 * edge]);
            strut.end = bounded(property[5 + 2 * edge]);
        }
        if (strut.end >= strut.start)
            struts.push_back(strut);
    }
    return struts;
}

QRect withoutStruts(const QRect& monitor, const std::vector<Strut>& struts, const QSize& screen) {
    QRect free = monitor;
    for (const auto& strut : struts) {
        const auto taken = areaOf(strut, screen) & monitor;
        if (taken.isEmpty())
            continue;
        QRect rest = free;
        switch (strut.edge) {
        case Strut::Left:
            rest.setLeft(std::max(free.left(), taken.right() + 1));
            break;
        case Strut::Right:
            rest.setRight(std::min(free.right(), taken.left() - 1));
            break;
        case Strut::Top:
            rest.setTop(std::max(free.top(), taken.bottom() + 1));
            break;
        case Strut::Bottom:
            rest.setBottom(std::min(free.bottom(), taken.top() - 1));
            break;
        }
        if (!rest.isEmpty())
            free = rest;
    }
    return free;
}

std::optional<QRect> monitorOf(const std::vector<QRect>& monitors, const QRect& window) {
    std::optional<QRect> best;
    int most = 0;
    for (const auto& monitor : monitors) {
        const auto shared = monitor & window;
        if (const int size = shared.isEmpty() ? 0 : shared.width() * shared.height(); size > most) {
            most = size;
            best = monitor;
        }
    }
    return best;
}

} // namespace talvera
