// SPDX-License-Identifier: MIT
#include "linux/atspi/OwnFocusedElement.h"

#include "linux/atspi/DescribedElement.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethodQueryEvent>

namespace talvera {

FocusedElement ownFocusedElement() {
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return NoFocusedElement{};
    auto* focus = QGuiApplication::focusObject();
    if (!focus)
        return NoFocusedElement{};
    QInputMethodQueryEvent query(Qt::ImEnabled | Qt::ImReadOnly);
    QCoreApplication::sendEvent(focus, &query);
    const bool takesText = query.value(Qt::ImEnabled).toBool() && !query.value(Qt::ImReadOnly).toBool();
    return std::make_unique<DescribedElement>(DescribedElement::Attributes{
        .role = takesText ? QStringLiteral("AXTextField") : QStringLiteral("AXGroup"),
        .editable = takesText});
}

} // namespace talvera
