// SPDX-License-Identifier: MIT
#include "shell/onboarding/DownloadModel.h"

#include "text/Localization.h"

#include <cmath>

namespace talvera {

namespace {

using Phase = ModelDownloader::Phase;

constexpr double bytesPerMegabyte = 1e6;

QString megabytes(std::int64_t bytes) {
    return QString::number(static_cast<double>(bytes) / bytesPerMegabyte, 'f', 0);
}

int percent(double progress) {
    return static_cast<int>(std::floor(progress * 100)); // 100 only when nothing is missing
}

/// `pattern` with its first `placeholder` replaced.
QString filledIn(QString pattern, const QString& placeholder, const QString& value) {
    if (const auto at = pattern.indexOf(placeholder); at >= 0)
        pattern.replace(at, placeholder.size(), value);
    return pattern;
}

} // namespace

DownloadModel::DownloadModel(ModelDownloader& downloader)
    : m_downloader(downloader) {
    const auto tellPhase = [this](const auto&) {
        Q_EMIT phaseChanged();
        Q_EMIT progressChanged();
    };
    const auto tellProgress = [this](const auto&) { Q_EMIT progressChanged(); };
    m_cancellables.push_back(m_downloader.phase.observe(tellPhase));
    m_cancellables.push_back(m_downloader.waitsForNetwork.observe(tellPhase));
    m_cancellables.push_back(m_downloader.progress.observe(tellProgress));
}

QString DownloadModel::title() const {
    return m_downloader.phase.get().kind() == Phase::Done
               ? localized("onboarding.download.title.done", "The speech model is here")
               : localized("onboarding.download.title", "Getting the speech model");
}

QString DownloadModel::body() const {
    return localized("onboarding.download.body",
                     "One download, and everything you say is recognized on this computer, even offline.");
}

QString DownloadModel::fileName() const {
    return localized("onboarding.download.fileRow.name", "Speech model");
}

QString DownloadModel::fileSize() const {
    return m_downloader.source().hasEncoder() ? localized("onboarding.download.fileRow.size", "830 MB")
                                              : localized("onboarding.download.fileRow.sizeOfMain", "540 MB");
}

QString DownloadModel::retryText() const {
    return localized("onboarding.download.retry", "Retry");
}

QString DownloadModel::phase() const {
    switch (m_downloader.phase.get().kind()) {
    case Phase::Idle:
        return QStringLiteral("idle");
    case Phase::Downloading:
        return QStringLiteral("downloading");
    case Phase::Verifying:
        return QStringLiteral("verifying");
    case Phase::Extracting:
        return QStringLiteral("extracting");
    case Phase::Done:
        return QStringLiteral("done");
    case Phase::Failed:
        return QStringLiteral("failed");
    }
    Q_UNREACHABLE();
}

QString DownloadModel::status() const {
    switch (m_downloader.phase.get().kind()) {
    case Phase::Idle:
        return localized("onboarding.download.status.idle", "Ready to download");
    case Phase::Downloading:
        return localized("onboarding.download.status.downloading", "Downloading model");
    case Phase::Verifying:
        return localized("onboarding.download.status.verifying", "Verifying integrity");
    case Phase::Extracting:
        return localized("onboarding.download.status.extracting", "Installing model");
    case Phase::Done:
        return localized("onboarding.download.status.done", "Model ready");
    case Phase::Failed:
        return localized("onboarding.download.status.failed", "Download failed");
    }
    Q_UNREACHABLE();
}

QString DownloadModel::failure() const {
    return m_downloader.phase.get().message();
}

QString DownloadModel::remark() const {
    return m_downloader.waitsForNetwork.get()
               ? localized("onboarding.download.waitsForNetwork",
                           "There is no network. The download goes on by itself when there is one.")
               : QString();
}

double DownloadModel::progress() const {
    return m_downloader.progress.get();
}

QString DownloadModel::percentText() const {
    return filledIn(localized("onboarding.download.percent", "%d%%"), QStringLiteral("%d"),
                    QString::number(percent(progress())))
        .replace(QStringLiteral("%%"), QStringLiteral("%"));
}

QString DownloadModel::progressText() const {
    if (m_downloader.phase.get().kind() != Phase::Downloading)
        return {};
    auto text = localized("onboarding.download.progress", "%.0f / %.0f MB  ·  %d%%");
    for (const auto bytes : {m_downloader.bytesWritten.get(), m_downloader.bytesTotal.get()})
        text = filledIn(text, QStringLiteral("%.0f"), megabytes(bytes));
    return filledIn(text, QStringLiteral("%d"), QString::number(percent(progress())))
        .replace(QStringLiteral("%%"), QStringLiteral("%"));
}

} // namespace talvera
