// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace talvera {

class Console;
class FileSystem;
class TextCatalog;
struct Directories;

/// The language that the program speaks for the rest of its life: the catalogs that Localization looks into.
/// Below the language's own lies the English one, so that a key that the language lacks is still worded for
/// this desktop; below that lie the defaults of the source.
///
/// A catalog is a file "CODE.json" among our resources. A new language is one more file.
class InterfaceLanguage {
public:
    struct Parts {
        FileSystem& files;
        const Directories& directories;
        Console& console;
    };

    /// `chosen` is the user's choice, "system" for the session's own; `preferred` are the session's, best
    /// first, as "de-AT". To be made before anything speaks, while there is an application object. A catalog
    /// that can't be read is left out.
    InterfaceLanguage(Parts parts, const QString& chosen, const QStringList& preferred);
    ~InterfaceLanguage();
    InterfaceLanguage(const InterfaceLanguage&) = delete;
    InterfaceLanguage& operator=(const InterfaceLanguage&) = delete;

    /// The code of the language that is spoken.
    const QString& spoken() const { return m_spoken; }

    /// The one that a new start would speak if this were chosen.
    QString bestFor(const QString& chosen) const;

private:
    QString pathOf(const QString& code) const;
    QString best(const QStringList& languages) const;
    void load(const QString& code);

    Parts m_parts;
    QStringList m_preferred;
    QString m_spoken;
    std::vector<std::unique_ptr<TextCatalog>> m_catalogs; ///< the one asked first last
};

} // namespace talvera
