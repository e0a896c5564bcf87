// SPDX-License-Identifier: MIT
#pragma once

#include "platform/language/LanguageModelChoice.h"
#include "platform/system/PlatformError.h"

#include <algorithm>
#include <cerrno>

namespace talvera::test {

/// A choice among the models that the test has put there.
class FakeLanguageModelChoice final : public LanguageModelChoice {
public:
    std::vector<Offer> models;
    QString choice;
    int looks = 0; ///< that have been asked for
    bool refusesFolder = false;
    QString note; ///< that lies in the folder

    std::vector<Offer> offers() override { return models; }
    void look() override { ++looks; }
    QString chosen() override {
        if (choice.isEmpty())
            return automatic();
        return missing() ? QString() : choice;
    }
    std::optional<Offer> missing() override {
        const bool isThere = std::any_of(models.begin(), models.end(),
                                         [this](const Offer& offer) { return offer.id == choice; });
        if (choice.isEmpty() || isThere)
            return std::nullopt;
        return Offer{choice, choice};
    }
    QString automatic() override { return models.size() == 1 ? models.front().id : QString(); }
    void choose(const QString& id) override { choice = id; }
    QString makeFolder(const QString& text) override {
        if (refusesFolder)
            throw PlatformError(QStringLiteral("FileSystem"), EACCES);
        note = text;
        return QStringLiteral("/models/language");
    }
};

} // namespace talvera::test
