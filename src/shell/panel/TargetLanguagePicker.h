// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

#include <QAbstractListModel>
#include <QString>

#include <vector>

namespace talvera {

class AppSettings;
class LanguageModel;
class ReadinessMonitor;
struct TargetLanguage;

/// The target languages as the picker offers them: all rows, or those that match the search, first the ones
/// that begin with it. Main thread only.
class TargetLanguagePicker final : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(QString currentDisplay READ currentDisplay NOTIFY currentChanged)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)
    Q_PROPERTY(int count READ count NOTIFY rowsChanged)

public:
    enum Role { Code = Qt::UserRole, DisplayName, DetailText, IsEnabled, IsSelected };

    TargetLanguagePicker(AppSettings& settings, ReadinessMonitor& readiness, LanguageModel& languageModel);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// The language that is chosen, as the closed picker names it.
    QString currentDisplay() const;

    const QString& search() const { return m_search; }
    void setSearch(const QString& search);
    int count() const { return static_cast<int>(m_rows.size()); }

    /// The row after `row` that can be chosen, or with a negative `step` the one before; `row` itself when
    /// there is none. -1 is before the first.
    Q_INVOKABLE int next(int row, int step) const;

    /// The row that can be chosen and is nearest to `row`, which may lie beyond either end; -1 without any.
    Q_INVOKABLE int nearest(int row) const;

    /// The row of the chosen language; -1 when the search has taken it out.
    Q_INVOKABLE int selectedRow() const;

    /// Makes that row's language the target; a row that can't be chosen changes nothing.
    Q_INVOKABLE void select(int row);

Q_SIGNALS:
    void currentChanged();
    void searchChanged();
    void rowsChanged();

private:
    bool isSelectable(const TargetLanguage& language) const;
    bool isModelAvailable() const;
    void lookAgain();

    AppSettings& m_settings;
    ReadinessMonitor& m_readiness;
    LanguageModel& m_languageModel;
    QString m_search;
    std::vector<const TargetLanguage*> m_rows;
    Cancellables m_cancellables;
};

} // namespace talvera
