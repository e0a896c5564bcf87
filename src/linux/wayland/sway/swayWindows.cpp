// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/swayWindows.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace talvera {

namespace {

qint64 idOf(const QJsonObject& node) {
    return node.value(QLatin1String("id")).toInteger();
}

SwayWindow windowOf(const QJsonObject& node, pid_t pid) {
    const auto x11 = node.value(QLatin1String("window_properties")).toObject();
    return {.container = idOf(node),
            .pid = pid,
            .identity = {.applicationId = node.value(QLatin1String("app_id")).toString(),
                         .windowClass = x11.value(QLatin1String("class")).toString(),
                         .instance = x11.value(QLatin1String("instance")).toString()},
            .hasFocus = node.value(QLatin1String("focused")).toBool()};
}

/// The tiled and the floating ones, in the order in which they had the focus.
std::vector<QJsonObject> childrenOf(const QJsonObject& node) {
    std::vector<QJsonObject> children;
    for (const auto kind : {QLatin1String("nodes"), QLatin1String("floating_nodes")}) {
        for (const auto& child : node.value(kind).toArray())
            children.push_back(child.toObject());
    }
    std::vector<qint64> recent;
    for (const auto& id : node.value(QLatin1String("focus")).toArray())
        recent.push_back(id.toInteger());
    std::ranges::stable_sort(children, {}, [&recent](const QJsonObject& child) {
        return std::ranges::find(recent, idOf(child)) - recent.begin();
    });
    return children;
}

void collect(const QJsonObject& node, std::vector<SwayWindow>& windows) {
    if (const auto pid = node.value(QLatin1String("pid")).toInteger(); pid > 0)
        windows.push_back(windowOf(node, static_cast<pid_t>(pid)));
    for (const auto& child : childrenOf(node))
        collect(child, windows);
}

} // namespace

std::vector<SwayWindow> swayWindows(const QByteArray& tree) {
    std::vector<SwayWindow> windows;
    collect(QJsonDocument::fromJson(tree).object(), windows);
    return windows;
}

} // namespace talvera
