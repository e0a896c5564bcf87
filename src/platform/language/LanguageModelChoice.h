// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace talvera {

/// Which of the language models on this machine is used: the user's choice, which lasts. Main thread only;
/// that it or the offers have changed is told by the LanguageModel's observe().
class LanguageModelChoice {
public:
    /// A model that may be chosen.
    struct Offer {
        QString id;
        QString name; ///< for the user

        bool operator==(const Offer&) const = default;
    };

    virtual ~LanguageModelChoice() = default;

    virtual std::vector<Offer> offers() = 0;

    /// Looks what there is to choose from now. What takes a while to answer is told when it has.
    virtual void look() = 0;

    /// The id of the offer that is used; empty for none. It is the user's choice, or else the automatic one.
    virtual QString chosen() = 0;

    /// What the user has chosen, while it isn't there.
    virtual std::optional<Offer> missing() = 0;

    /// The id of the offer that is used without a choice of the user's; empty when there is none, or several
    /// that it could be.
    virtual QString automatic() = 0;

    /// Lasts. An empty id takes the choice back.
    virtual void choose(const QString& id) = 0;

    /// The directory into which the user puts models. It is made, with a file in it that says `note`.
    /// Throws PlatformError (domain "FileSystem", code errno).
    virtual QString makeFolder(const QString& note) = 0;
};

} // namespace talvera
