// SPDX-License-Identifier: MIT
#pragma once

#include "shell/settings/HotkeyRecorderModel.h"

#include <QPointer>
#include <QQuickItem>
#include <QSet>
#include <QtQml/qqmlregistration.h>

namespace talvera {

/// What a HotkeyRecorder gets its clicks and keys through. Keys are told by their places, which QML's own
/// handlers don't know. Without a recording it is a button: Space and Return do what a click does.
class RecorderItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(talvera::HotkeyRecorderModel* recorder READ recorder WRITE setRecorder NOTIFY recorderChanged
                   REQUIRED)
    /// The item has the keyboard, and got it by a key.
    Q_PROPERTY(bool visualFocus READ visualFocus NOTIFY visualFocusChanged)

public:
    explicit RecorderItem(QQuickItem* parent = nullptr);
    ~RecorderItem() override;

    HotkeyRecorderModel* recorder() const { return m_recorder; }
    void setRecorder(HotkeyRecorderModel* recorder);
    bool visualFocus() const { return m_visualFocus; }

    Q_INVOKABLE void record();

Q_SIGNALS:
    void recorderChanged();
    void visualFocusChanged();

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    bool isArmed() const { return m_recorder && m_recorder->isArmed(); }
    void cancel();
    void setVisualFocus(bool visual);

    QPointer<HotkeyRecorderModel> m_recorder;
    bool isRepeat(const QKeyEvent& press);

    QSet<quint32>
        m_keysDown; ///< scan codes: a server that sends no releases between repeats doesn't mark them either
    int m_pressedKey = 0; ///< the one that will act as a click when it goes up
    bool m_visualFocus = false;
};

} // namespace talvera
