// SPDX-License-Identifier: MIT
#include "speech/TranscriptRules.h"

#include "text/Characters.h"
#include "text/icuText.h"

#include <QSet>
#include <QStringList>

#include <unicode/regex.h>

#include <array>
#include <memory>

namespace talvera {

namespace {

/// A pattern and what takes the place of its matches. To be made once: compiling the pattern takes its time.
class Rule {
public:
    Rule(const char16_t* pattern, const char16_t* replacement)
        : m_replacement(replacement) {
        UErrorCode status = U_ZERO_ERROR;
        m_pattern.reset(icu::RegexPattern::compile(icu::UnicodeString(pattern), 0, status));
        succeed(status);
    }

    /// Replaces every match, left to right. Any thread.
    QString applied(const QString& text) const {
        UErrorCode status = U_ZERO_ERROR;
        const icu::UnicodeString input(reinterpret_cast<const char16_t*>(text.utf16()),
                                       static_cast<int32_t>(text.size()));
        const std::unique_ptr<icu::RegexMatcher> matcher(m_pattern->matcher(input, status));
        succeed(status);
        matcher->setStackLimit(0, status); // a mark repeated a million times is no failure
        const auto result = matcher->replaceAll(m_replacement, status);
        succeed(status);
        return toQString(result);
    }

private:
    static void succeed(UErrorCode status) {
        if (U_FAILURE(status))
            qFatal("a transcript rule is broken: %s", u_errorName(status));
    }

    std::unique_ptr<icu::RegexPattern> m_pattern;
    icu::UnicodeString m_replacement;
};

struct Rules {
    // What the user says to break a line.
    const std::array<Rule, 4> voiceCommands = {
        Rule{u"(?i)\\bnew\\s+paragraph\\b", u"\n\n"},
        Rule{u"(?i)\\bnew\\s+line\\b", u"\n"},
        Rule{u"(?i)\\bновый\\s+абзац\\b", u"\n\n"},
        Rule{u"(?i)\\bновая\\s+строка\\b", u"\n"},
    };

    // The look-behinds and possessive quantifiers change no match: they spare the engine a second walk over a
    // run that it has already seen, without which a long run would cost the square of its length.
    const std::array<Rule, 4> tidying = {
        Rule{u"(?<!\\s)\\s++([.,!?:;])", u"$1"},  // no blank or line break before a mark
        Rule{u"([.,!?;:])(?:\\s*+\\1)++", u"$1"}, // a repeated mark is written once
        Rule{u"[ \\t][ \\t]++", u" "},            // one blank where there were more
        Rule{u"\\n[ \\t]++", u"\n"},              // no indentation
    };

    const Rule bracketedMark{u"\\[[^\\]]+\\]", u""};
};

const Rules& rules() {
    static const Rules made;
    return made;
}

const QSet<QString>& questionStarters() {
    static const QSet<QString> words = {
        // Russian
        QStringLiteral("кто"), QStringLiteral("что"), QStringLiteral("где"), QStringLiteral("когда"),
        QStringLiteral("почему"), QStringLiteral("зачем"), QStringLiteral("как"), QStringLiteral("какой"),
        QStringLiteral("какая"), QStringLiteral("какое"), QStringLiteral("какие"), QStringLiteral("чей"),
        QStringLiteral("чья"), QStringLiteral("чьё"), QStringLiteral("сколько"), QStringLiteral("откуда"),
        QStringLiteral("куда"), QStringLiteral("разве"), QStringLiteral("неужели"),
        // English
        QStringLiteral("who"), QStringLiteral("what"), QStringLiteral("where"), QStringLiteral("when"),
        QStringLiteral("why"), QStringLiteral("how"), QStringLiteral("which"), QStringLiteral("whose"),
        QStringLiteral("whom"), QStringLiteral("is"), QStringLiteral("are"), QStringLiteral("do"),
        QStringLiteral("does"), QStringLiteral("did"), QStringLiteral("can"), QStringLiteral("could"),
        QStringLiteral("would"), QStringLiteral("will"), QStringLiteral("should"), QStringLiteral("shall"),
        QStringLiteral("may"), QStringLiteral("might"), QStringLiteral("have"), QStringLiteral("has"),
        QStringLiteral("had")};
    return words;
}

QStringList nonEmptyLines(const QString& text) {
    QStringList lines;
    qsizetype begin = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !isLineBreak(text[i].unicode()))
            continue;
        if (i > begin)
            lines.append(text.mid(begin, i - begin));
        begin = i + 1;
    }
    return lines;
}

QString withoutBracketedMarks(const QString& line) {
    // Behind the last closing bracket no match can end, so that part need not be searched.
    const auto end = line.lastIndexOf(u']') + 1;
    return end == 0 ? line : rules().bracketedMark.applied(line.left(end)) + line.mid(end);
}

QString firstWord(const std::vector<QStringView>& textCharacters) {
    QString word;
    for (const auto character : textCharacters) {
        if (isLetter(character))
            word += character;
        else if (!word.isEmpty())
            break;
    }
    return foldedForComparison(word);
}

} // namespace

QString postProcess(const QString& text) {
    QStringList kept;
    for (const auto& line : nonEmptyLines(text)) {
        const auto cleaned = trimmedBlanks(withoutBracketedMarks(line));
        if (!cleaned.isEmpty())
            kept.append(cleaned);
    }
    return fixQuestionMark(normalize(trimmedWhitespace(kept.join(u' '))));
}

QString normalize(const QString& text) {
    auto result = text;
    for (const auto& rule : rules().voiceCommands)
        result = rule.applied(result);
    for (const auto& rule : rules().tidying)
        result = rule.applied(result);
    return trimmedWhitespace(result);
}

QString fixQuestionMark(const QString& text) {
    const auto working = trimmedWhitespace(text);
    if (working.isEmpty())
        return text;
    const auto textCharacters = characters(working);
    if (!questionStarters().contains(firstWord(textCharacters)))
        return text;
    const auto last = textCharacters.back();
    if (last == u"?" || last == u"!")
        return text;
    if (last == u".")
        return working.chopped(last.size()) + u'?';
    return working + u'?';
}

} // namespace talvera
