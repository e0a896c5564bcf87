// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "models/ModelDownloader.h"

#include <QObject>
#include <QString>

namespace talvera {

/// The step of the download. Main thread only.
class DownloadModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title NOTIFY phaseChanged)
    Q_PROPERTY(QString body READ body CONSTANT)
    Q_PROPERTY(QString fileName READ fileName CONSTANT)
    Q_PROPERTY(QString fileSize READ fileSize CONSTANT)
    Q_PROPERTY(QString retryText READ retryText CONSTANT)
    Q_PROPERTY(QString phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(QString status READ status NOTIFY phaseChanged)
    Q_PROPERTY(QString failure READ failure NOTIFY phaseChanged)
    Q_PROPERTY(QString remark READ remark NOTIFY phaseChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString percentText READ percentText NOTIFY progressChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)

public:
    explicit DownloadModel(ModelDownloader& downloader);

    QString title() const;
    QString body() const;
    QString fileName() const;
    QString fileSize() const;
    QString retryText() const;

    /// "idle", "downloading", "verifying", "extracting", "done" or "failed".
    QString phase() const;
    QString status() const;
    /// Why it failed; else empty.
    QString failure() const;
    /// What the user may want to know beside; mostly empty.
    QString remark() const;

    /// 0 to 1.
    double progress() const;
    QString percentText() const;
    /// How many bytes there are; empty unless the download is under way.
    QString progressText() const;

    Q_INVOKABLE void retry() { m_downloader.retry(); }

Q_SIGNALS:
    void phaseChanged();
    void progressChanged();

private:
    ModelDownloader& m_downloader;
    Cancellables m_cancellables;
};

} // namespace talvera
