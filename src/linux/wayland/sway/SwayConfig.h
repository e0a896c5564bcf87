// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace talvera {

/// A key with exactly these modifiers, as a line of sway's configuration names it.
struct SwayCombination {
    std::uint64_t modifiers = 0; ///< KeyFlag bits
    QString key{};               ///< the number of an X keycode, or the name of a keysym in small letters
    bool isKeycode = false;

    bool operator==(const SwayCombination&) const = default;
};

/// What sway's configuration binds to keys. Sway itself tells no program of its bindings, and replaces one by
/// another without a word. So this reads the configuration as sway does, as far as bindings need it:
/// variables, blocks, included files. What is bound in modes other than the first is not among them, nor what
/// was bound later by programs.
class SwayConfig {
public:
    /// A file by the pattern of an "include", in the order of their names.
    struct File {
        QString path; ///< absolute, without symbolic links; it is read once, however often it is included
        QByteArray text;
    };
    /// The files that a pattern names, which may be relative to a directory.
    using Include = std::function<std::vector<File>(const QString& pattern, const QString& directory)>;

    SwayConfig(const File& main, Include include);

    const std::vector<SwayCombination>& bound() const { return m_bound; }

    /// The files that are there.
    static std::vector<File> filesNamed(const QString& pattern, const QString& directory);

private:
    void read(const File& file);
    void readLine(const QString& line, const QString& directory);
    void obey(const QStringList& words, const QString& directory);
    QString withVariables(QString text) const;

    const Include m_include;
    std::set<QString> m_read;
    QStringList m_blocks; // the heads of those that are open, the outermost first
    std::map<QString, QString> m_variables;
    std::vector<SwayCombination> m_bound;
};

} // namespace talvera
