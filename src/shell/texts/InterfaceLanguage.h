// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace talvera {

class Console;
class FileSystem;
class InstalledFonts;
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
        InstalledFonts& fonts;
    };

    /// `chosen` is the user's choice, "system" for the session's own; `preferred` are the session's, best
    /// first, as "de-AT". To be made before anything speaks, while there is an application object. A catalog
    /// that can't be read is left out, and so is a language whose letters no font here has: then the
    /// session's next one is spoken.
    InterfaceLanguage(Parts parts, const QString& chosen, const QStringList& preferred);
    ~InterfaceLanguage();
    InterfaceLanguage(const InterfaceLanguage&) = delete;
    InterfaceLanguage& operator=(const InterfaceLanguage&) = delete;

    /// The code of the language that is spoken.
    const QString& spoken() const { return m_choice.code; }

    /// The one that a new start would speak if this were chosen.
    QString bestFor(const QString& chosen) const { return choiceFor(chosen).code; }

    /// The package with the font that the wanted language would need to be spoken; nothing if there is one.
    const std::optional<QString>& missingFont() const { return m_choice.missingFont; }

private:
    struct Choice {
        QString code = QStringLiteral("en");
        std::optional<QString> missingFont{};
    };

    QString pathOf(const QString& code) const;
    Choice choiceFor(const QString& chosen) const;
    Choice best(const QStringList& languages) const;
    void load(const QString& code);

    Parts m_parts;
    QStringList m_preferred;
    Choice m_choice;
    std::vector<std::unique_ptr<TextCatalog>> m_catalogs; ///< the one asked first last
};

} // namespace talvera
