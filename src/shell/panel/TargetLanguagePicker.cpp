// SPDX-License-Identifier: MIT
#include "shell/panel/TargetLanguagePicker.h"

#include "language/AICleanup.h"
#include "language/TargetLanguage.h"
#include "persistence/AppSettings.h"
#include "platform/language/LanguageModel.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/texts/languageName.h"
#include "text/Localization.h"

#include <algorithm>
#include <cstdlib>

namespace talvera {

namespace {

QString nameOf(const TargetLanguage& language) {
    return languageName(language.code, language.displayName);
}

/// Without the remark that "off" has in the list.
QString shortNameOf(const TargetLanguage& language) {
    return language.code == u"off" ? localized("language.off.short", "Off") : nameOf(language);
}

} // namespace

TargetLanguagePicker::TargetLanguagePicker(AppSettings& settings, ReadinessMonitor& readiness,
                                           LanguageModel& languageModel)
    : m_settings(settings)
    , m_readiness(readiness)
    , m_languageModel(languageModel) {
    lookAgain();
    m_cancellables.push_back(settings.targetLanguageCode.observe([this](const QString&) {
        Q_EMIT currentChanged();
        if (count() > 0)
            Q_EMIT dataChanged(index(0), index(count() - 1), {IsSelected});
    }));
    m_cancellables.push_back(readiness.aiState.observe([this](AIAvailabilityState) { lookAgain(); }));
    m_cancellables.push_back(languageModel.observe([this] { lookAgain(); })); // it may have other languages
}

int TargetLanguagePicker::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant TargetLanguagePicker::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& language = *m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Code:
        return language.code;
    case DisplayName:
    case Qt::DisplayRole:
        return nameOf(language);
    case DetailText:
        return isModelAvailable() && !isSelectable(language)
                   ? localized("menu.language.notInstalled", "Not installed")
                   : QString();
    case IsEnabled:
        return isSelectable(language);
    case IsSelected:
        return language.code == m_settings.targetLanguageCode.get();
    default:
        return {};
    }
}

QHash<int, QByteArray> TargetLanguagePicker::roleNames() const {
    return {{Code, "code"},
            {DisplayName, "displayName"},
            {DetailText, "detailText"},
            {IsEnabled, "isEnabled"},
            {IsSelected, "isSelected"}};
}

QString TargetLanguagePicker::currentDisplay() const {
    return shortNameOf(TargetLanguage::byCode(m_settings.targetLanguageCode.get()));
}

void TargetLanguagePicker::setSearch(const QString& search) {
    if (search == m_search)
        return;
    m_search = search;
    Q_EMIT searchChanged();
    lookAgain();
}

int TargetLanguagePicker::next(int row, int step) const {
    for (int other = row + step; other >= 0 && other < count(); other += step) {
        if (isSelectable(*m_rows[static_cast<std::size_t>(other)]))
            return other;
    }
    return row;
}

int TargetLanguagePicker::nearest(int row) const {
    int best = -1;
    for (int other = 0; other < count(); ++other) {
        const bool isNearer = best < 0 || std::abs(other - row) < std::abs(best - row);
        if (isNearer && isSelectable(*m_rows[static_cast<std::size_t>(other)]))
            best = other;
    }
    return best;
}

int TargetLanguagePicker::selectedRow() const {
    const auto& code = m_settings.targetLanguageCode.get();
    const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                  [&](const auto* language) { return language->code == code; });
    return row == m_rows.end() ? -1 : static_cast<int>(row - m_rows.begin());
}

void TargetLanguagePicker::select(int row) {
    if (row < 0 || row >= count())
        return;
    if (const auto& language = *m_rows[static_cast<std::size_t>(row)]; isSelectable(language))
        m_settings.targetLanguageCode.set(language.code);
}

bool TargetLanguagePicker::isModelAvailable() const {
    return m_readiness.aiState.get() == AIAvailabilityState::Available;
}

bool TargetLanguagePicker::isSelectable(const TargetLanguage& language) const {
    return language.isSelectable(isModelAvailable(), m_readiness.currentAIState(),
                                 AICleanup::supportedLanguageCodes(m_languageModel));
}

void TargetLanguagePicker::lookAgain() {
    beginResetModel();
    m_rows.clear();
    const auto search = m_search.trimmed();
    for (const auto& language : TargetLanguage::all()) {
        if (shortNameOf(language).contains(search, Qt::CaseInsensitive))
            m_rows.push_back(&language);
    }
    std::stable_partition(m_rows.begin(), m_rows.end(), [&](const auto* language) {
        return shortNameOf(*language).startsWith(search, Qt::CaseInsensitive);
    });
    endResetModel();
    Q_EMIT rowsChanged();
}

} // namespace talvera
