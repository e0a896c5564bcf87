// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickItem>

#include <vector>

namespace talvera::test {

/// All items below `item` for which `matches` holds.
template <typename Matches>
std::vector<QQuickItem*> itemsBelow(QQuickItem& item, const Matches& matches) {
    std::vector<QQuickItem*> found;
    for (auto* child : item.childItems()) {
        if (matches(*child))
            found.push_back(child);
        const auto below = itemsBelow(*child, matches);
        found.insert(found.end(), below.begin(), below.end());
    }
    return found;
}

} // namespace talvera::test
