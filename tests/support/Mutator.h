// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <algorithm>
#include <cstdint>
#include <random>

namespace talvera::test {

/// Spoils good input in many small ways, for tests of parsers. The same seed gives the same input, on every
/// machine.
class Mutator {
public:
    explicit Mutator(std::uint32_t seed)
        : m_random(seed) {}

    /// A number from 0 up to but not including `bound`.
    qsizetype below(qsizetype bound) {
        return static_cast<qsizetype>(m_random() % static_cast<std::uint64_t>(std::max<qsizetype>(bound, 1)));
    }

    QByteArray noise(qsizetype size) {
        QByteArray bytes(size, 0);
        for (auto& byte : bytes)
            byte = static_cast<char>(m_random());
        return bytes;
    }

    /// `good` with one to `mostChanges` changes. `tokens` are pieces that mean something to the parser.
    QByteArray mutated(QByteArray good, const QByteArrayList& tokens = {}, int mostChanges = 8) {
        for (auto changes = 1 + below(mostChanges); changes > 0; --changes)
            change(good, tokens);
        return good;
    }

private:
    void change(QByteArray& bytes, const QByteArrayList& tokens) {
        const auto at = below(bytes.size() + 1);
        const auto length = below(std::min<qsizetype>(bytes.size() - at, 40) + 1);
        switch (below(tokens.isEmpty() ? 6 : 8)) {
        case 0: // cut off
            bytes.truncate(at);
            break;
        case 1: // a piece is missing
            bytes.remove(at, length);
            break;
        case 2: // a piece comes twice, somewhere
            bytes.insert(below(bytes.size() + 1), bytes.mid(at, length));
            break;
        case 3: // a flipped bit
            if (at < bytes.size())
                bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(8)));
            break;
        case 4: // another byte
            if (at < bytes.size())
                bytes[at] = static_cast<char>(m_random());
            break;
        case 5: // something that was never there
            bytes.insert(at, noise(below(20)));
            break;
        case 6:
            bytes.insert(at, tokens[below(tokens.size())]);
            break;
        default:
            bytes.replace(at, length, tokens[below(tokens.size())]);
        }
    }

    std::mt19937 m_random;
};

} // namespace talvera::test
