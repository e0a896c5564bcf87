// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

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

    /// The id of the offer that is used; empty for none. Without a choice of the user's it is the only
    /// offer, if there is just one.
    virtual QString chosen() = 0;

    /// Lasts. An empty id takes the choice back.
    virtual void choose(const QString& id) = 0;

    /// The directory into which the user puts models. It is made, with a file in it that says `note`.
    /// Throws PlatformError (domain "FileSystem", code errno).
    virtual QString makeFolder(const QString& note) = 0;
};

} // namespace talvera
