// SPDX-License-Identifier: MIT
#include "wordErrors.h"

#include <QStringList>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace talvera::test {

qsizetype wordErrors(const QString& heard, const QString& said) {
    const auto from = heard.split(' ', Qt::SkipEmptyParts);
    const auto to = said.split(' ', Qt::SkipEmptyParts);
    // The errors between the words of `from` so far and each beginning of `to`.
    std::vector<qsizetype> errors(static_cast<std::size_t>(to.size()) + 1);
    std::iota(errors.begin(), errors.end(), 0);
    for (const auto& word : from) {
        auto diagonal = errors.front()++;
        for (std::size_t at = 1; at < errors.size(); ++at) {
            const auto replaced = diagonal + (word == to[static_cast<qsizetype>(at) - 1] ? 0 : 1);
            diagonal = std::exchange(errors[at], std::min({replaced, errors[at] + 1, errors[at - 1] + 1}));
        }
    }
    return errors.back();
}

} // namespace talvera::test
