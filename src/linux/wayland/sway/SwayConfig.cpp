// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/SwayConfig.h"

#include "platform/keyboard/VirtualKey.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <utility>

#include <wordexp.h>

namespace talvera {

namespace {

struct Modifier {
    const char* name;
    std::uint64_t flag;
};

constexpr Modifier modifiers[] = {{"Shift", KeyFlag::Shift},     {"Ctrl", KeyFlag::Control},
                                  {"Control", KeyFlag::Control}, {"Mod1", KeyFlag::Option},
                                  {"Alt", KeyFlag::Option},      {"Mod4", KeyFlag::Command},
                                  {"Super", KeyFlag::Command}};

std::uint64_t modifierNamed(const QString& name) {
    for (const auto& modifier : modifiers) {
        if (name.compare(QLatin1String(modifier.name), Qt::CaseInsensitive) == 0)
            return modifier.flag;
    }
    return 0;
}

/// Nothing for what no hotkey can be: several keys, locks and layouts as conditions, buttons of a mouse.
std::optional<SwayCombination> combinationOf(const QString& text, bool isKeycode) {
    SwayCombination combination{.isKeycode = isKeycode};
    for (const auto& part : text.split(u'+', Qt::SkipEmptyParts)) {
        if (const auto flag = modifierNamed(part); flag != 0)
            combination.modifiers |= flag;
        else if (combination.key.isEmpty())
            combination.key = part.toLower();
        else
            return std::nullopt;
    }
    return combination.key.isEmpty() ? std::nullopt : std::optional(combination);
}

QString withoutQuotes(QString word) {
    return word.remove(u'"').remove(u'\'');
}

std::vector<QString> pathsNamed(const QString& pattern) {
    wordexp_t words{};
    std::vector<QString> paths;
    if (::wordexp(pattern.toLocal8Bit().constData(), &words, WRDE_NOCMD) == 0) {
        for (std::size_t i = 0; i < words.we_wordc; ++i)
            paths.push_back(QString::fromLocal8Bit(words.we_wordv[i]));
    }
    ::wordfree(&words);
    return paths;
}

} // namespace

SwayConfig::SwayConfig(const File& main, Include include)
    : m_include(std::move(include)) {
    read(main);
}

std::vector<SwayConfig::File> SwayConfig::filesNamed(const QString& pattern, const QString& directory) {
    const bool isRelative = !QStringLiteral("/~$").contains(pattern.left(1));
    std::vector<File> files;
    for (const auto& path : pathsNamed(isRelative ? directory + u'/' + pattern : pattern)) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            files.push_back({.path = QFileInfo(path).canonicalFilePath(), .text = file.readAll()});
    }
    return files;
}

void SwayConfig::read(const File& file) {
    if (!m_read.insert(file.path).second)
        return;
    const auto directory = QFileInfo(file.path).path();
    const auto text = QString::fromUtf8(file.text).replace(QStringLiteral("\\\n"), QString());
    for (const auto& line : text.split(u'\n'))
        readLine(line.trimmed(), directory);
}

void SwayConfig::readLine(const QString& line, const QString& directory) {
    if (line.isEmpty() || line.startsWith(u'#'))
        return;
    if (line == QStringLiteral("}")) {
        if (!m_blocks.isEmpty())
            m_blocks.removeLast();
        return;
    }
    if (line.endsWith(u'{')) {
        m_blocks.append(withVariables(line.chopped(1)));
        return;
    }
    // A line in a block is told as if the block's head stood before it.
    static const QRegularExpression space(QStringLiteral("\\s+"));
    const auto whole = (m_blocks + QStringList{line}).join(u' ');
    if (const auto words = whole.split(space, Qt::SkipEmptyParts);
        words.value(0) == QStringLiteral("set") && words.size() > 2)
        m_variables[words[1]] = withVariables(QStringList(words.mid(2)).join(u' '));
    else
        obey(withVariables(whole).split(space, Qt::SkipEmptyParts), directory);
}

void SwayConfig::obey(const QStringList& words, const QString& directory) {
    const auto command = words.value(0).toLower();
    if (command == QStringLiteral("mode") && withoutQuotes(words.value(1)) == QStringLiteral("default")) {
        obey(words.mid(2), directory);
        return;
    }
    if (command == QStringLiteral("include")) {
        for (const auto& file : m_include(QStringList(words.mid(1)).join(u' '), directory))
            read(file);
        return;
    }
    const bool isUnbinding = command.startsWith(QStringLiteral("un"));
    const auto kind = isUnbinding ? command.mid(2) : command;
    if (kind != QStringLiteral("bindsym") && kind != QStringLiteral("bindcode"))
        return;
    const auto name = std::find_if(words.begin() + 1, words.end(), [](const QString& word) {
        return !word.startsWith(QStringLiteral("--"));
    });
    const auto combination = name == words.end()
                                 ? std::nullopt
                                 : combinationOf(withoutQuotes(*name), kind == QStringLiteral("bindcode"));
    if (!combination)
        return;
    std::erase(m_bound, *combination);
    if (!isUnbinding)
        m_bound.push_back(*combination);
}

QString SwayConfig::withVariables(QString text) const {
    // The longest names first: one may begin with another.
    std::vector<std::pair<QString, QString>> variables(m_variables.begin(), m_variables.end());
    std::ranges::stable_sort(variables, std::ranges::greater(),
                             [](const auto& variable) { return variable.first.size(); });
    for (const auto& [name, value] : variables)
        text.replace(name, value);
    return text;
}

} // namespace talvera
