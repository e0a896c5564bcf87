// SPDX-License-Identifier: MIT
#pragma once

#include "InMemoryPreferenceStore.h"
#include "concurrency/QtMainActor.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/X11OverlayDesktop.h"
#include "persistence/AppSettings.h"
#include "platform/desktop/DesktopAppearance.h"
#include "views/ViewEngine.h"

#include <QRasterWindow>
#include <QString>

namespace talvera::test {

/// What the pictures are taken of: a desktop with a wallpaper, our views on it, and a camera.
class Stage {
public:
    enum class Backdrop { Desk, Plain };

    /// `label` tells pictures of the same scene apart, such as "dark-200"; `language` is the session's, "de".
    Stage(const QString& directory, const QString& label, const QString& language, bool dark,
          Backdrop backdrop = Backdrop::Desk);

    const QString& language() const { return m_language; }

    /// Lets the event loop run.
    void wait(Duration duration);

    /// Only the first scene of each kind is wanted, as a reader sees it who knows nothing of the program yet.
    bool isForFrontPage() const { return m_isForFrontPage; }

    /// Takes a picture of a part of the screen, in device-independent pixels, as NAME-LABEL.png.
    void photograph(const QString& name, const QRect& area);

    QtMainActor actor;
    InMemoryPreferenceStore preferences;
    AppSettings settings{preferences};
    DesktopAppearance appearance;
    ViewEngine views{appearance};
    const X11Server server;
    X11OverlayDesktop desktop{server};

private:
    class Wallpaper : public QRasterWindow {
    public:
        Wallpaper(bool dark, Backdrop backdrop);

    protected:
        void paintEvent(QPaintEvent* event) override;

    private:
        bool m_dark;
        Backdrop m_backdrop;
    };

    QString m_directory;
    QString m_label;
    QString m_language;
    bool m_isForFrontPage;
    Wallpaper m_wallpaper;
};

} // namespace talvera::test
