// SPDX-License-Identifier: MIT
#include "views/controls/RecorderItem.h"

#include <QKeyEvent>

#include <utility>

namespace talvera {

namespace {

bool isClickKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_Space || event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

RecorderItem::RecorderItem(QQuickItem* parent)
    : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setActiveFocusOnTab(true);
}

RecorderItem::~RecorderItem() {
    cancel();
}

void RecorderItem::setRecorder(HotkeyRecorderModel* recorder) {
    if (m_recorder == recorder)
        return;
    cancel();
    if (m_recorder)
        m_recorder->disconnect(this);
    m_recorder = recorder;
    if (m_recorder)
        connect(m_recorder, &HotkeyRecorderModel::keyboardWanted, this,
                [this] { forceActiveFocus(Qt::OtherFocusReason); });
    Q_EMIT recorderChanged();
}

void RecorderItem::record() {
    if (m_recorder && isEnabled())
        m_recorder->record();
}

void RecorderItem::cancel() {
    if (m_recorder)
        m_recorder->cancel();
}

bool RecorderItem::event(QEvent* event) {
    // What is recorded may be a shortcut of this window.
    if (event->type() == QEvent::ShortcutOverride && isArmed()) {
        event->accept();
        return true;
    }
    return QQuickItem::event(event);
}

void RecorderItem::mousePressEvent(QMouseEvent* event) {
    event->accept();
    record();
}

bool RecorderItem::isRepeat(const QKeyEvent& press) {
    const auto key = press.nativeScanCode(); // 0 for what another program makes up
    const bool isDown = key != 0 && m_keysDown.contains(key);
    m_keysDown.insert(key);
    return press.isAutoRepeat() || isDown;
}

void RecorderItem::keyPressEvent(QKeyEvent* event) {
    const bool repeat = isRepeat(*event);
    if (isArmed()) {
        event->setAccepted(m_recorder->press(event->nativeScanCode(), event->nativeVirtualKey(),
                                             event->nativeModifiers(), repeat));
    } else if (isClickKey(*event)) {
        if (!repeat)
            m_pressedKey = event->key();
    } else {
        event->ignore();
    }
}

/// Not before the key goes up: what follows its press would be the first key of the recording.
void RecorderItem::keyReleaseEvent(QKeyEvent* event) {
    if (!event->isAutoRepeat())
        m_keysDown.remove(event->nativeScanCode());
    if (event->isAutoRepeat() || std::exchange(m_pressedKey, 0) != event->key())
        event->setAccepted(isArmed());
    else
        record();
}

void RecorderItem::focusInEvent(QFocusEvent* event) {
    QQuickItem::focusInEvent(event);
    setVisualFocus(event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason);
}

/// Keys go elsewhere now, and the hotkeys are to act again.
void RecorderItem::focusOutEvent(QFocusEvent* event) {
    QQuickItem::focusOutEvent(event);
    m_keysDown.clear(); // what goes up now is told elsewhere
    m_pressedKey = 0;
    setVisualFocus(false);
    cancel();
}

void RecorderItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if ((change == ItemVisibleHasChanged && !data.boolValue) || (change == ItemSceneChange && !data.window))
        cancel();
}

void RecorderItem::setVisualFocus(bool visual) {
    if (std::exchange(m_visualFocus, visual) != visual)
        Q_EMIT visualFocusChanged();
}

} // namespace talvera
