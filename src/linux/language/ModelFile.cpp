// SPDX-License-Identifier: MIT
#include "linux/language/ModelFile.h"

#include <QFile>
#include <QHash>
#include <QVariant>

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace talvera {

namespace {

constexpr std::uint64_t longestText = 1 << 16;
/// A longer one is a vocabulary, behind which nothing is looked for.
constexpr std::uint64_t longestList = 1 << 12;
constexpr std::uint64_t mostEntries = 1 << 16;
constexpr qint64 longestHead = 1 << 24; ///< of what is read, in bytes

/// The kinds of values, by their numbers in the file.
enum class Kind : std::uint32_t {
    UInt8,
    Int8,
    UInt16,
    Int16,
    UInt32,
    Int32,
    Float32,
    Bool,
    Text,
    List,
    UInt64,
    Int64,
    Float64,
};

/// Reads what stands in a head one after the other. After a failure all else fails too.
class HeadReader {
public:
    explicit HeadReader(QFile& file)
        : m_file(file) {}

    bool failed() const { return m_failed; }

    template <typename Number>
    Number number() {
        Number value{};
        if (!m_failed && m_file.read(reinterpret_cast<char*>(&value), sizeof value) != qint64{sizeof value})
            m_failed = true;
        return m_failed ? Number{} : value; // files and machines of ours have the low byte first
    }

    QString text() {
        const auto size = number<std::uint64_t>();
        m_failed = m_failed || size > longestText || m_file.pos() > longestHead;
        if (m_failed)
            return {};
        const auto bytes = m_file.read(static_cast<qint64>(size));
        m_failed = bytes.size() != static_cast<qint64>(size);
        return QString::fromUtf8(bytes);
    }

    /// A value of that kind: a number, a text or a list of such; nothing of a kind that isn't known.
    QVariant value(Kind kind) {
        switch (kind) {
        case Kind::UInt8:
        case Kind::Bool:
            return whole<std::uint8_t>();
        case Kind::Int8:
            return whole<std::int8_t>();
        case Kind::UInt16:
            return whole<std::uint16_t>();
        case Kind::Int16:
            return whole<std::int16_t>();
        case Kind::UInt32:
            return whole<std::uint32_t>();
        case Kind::Int32:
            return whole<std::int32_t>();
        case Kind::UInt64:
            return whole<std::uint64_t>();
        case Kind::Int64:
            return whole<std::int64_t>();
        case Kind::Float32:
            return static_cast<double>(number<float>());
        case Kind::Float64:
            return number<double>();
        case Kind::Text:
            return text();
        case Kind::List:
            return list();
        }
        m_failed = true;
        return {};
    }

private:
    template <typename Number>
    QVariant whole() {
        return static_cast<qlonglong>(number<Number>());
    }

    QVariant list() {
        const auto kind = static_cast<Kind>(number<std::uint32_t>());
        const auto count = number<std::uint64_t>();
        m_failed = m_failed || kind == Kind::List || count > longestList;
        QVariantList values;
        for (std::uint64_t i = 0; i < count && !m_failed; ++i)
            values.push_back(value(kind));
        return values;
    }

    QFile& m_file;
    bool m_failed = false;
};

using Entries = QHash<QString, QVariant>;

/// What the head says up to its vocabulary; empty when it is none.
Entries readEntries(QFile& file) {
    constexpr std::uint32_t magic = 0x46554747; // "GGUF"
    constexpr std::uint32_t oldest = 2;
    constexpr std::uint32_t newest = 3;
    HeadReader head(file);
    const bool isModel = head.number<std::uint32_t>() == magic;
    const auto version = head.number<std::uint32_t>();
    head.number<std::uint64_t>(); // how many tensors
    const auto count = head.number<std::uint64_t>();
    Entries entries;
    if (!isModel || version < oldest || version > newest || head.failed())
        return entries;
    for (std::uint64_t i = 0; i < std::min(count, mostEntries); ++i) {
        const auto key = head.text();
        const auto value = head.value(static_cast<Kind>(head.number<std::uint32_t>()));
        if (head.failed())
            break;
        entries.insert(key, value);
    }
    return entries;
}

/// A number, or the largest of a list of such.
std::int64_t largest(const QVariant& value) {
    if (value.typeId() != QMetaType::QVariantList)
        return std::max<std::int64_t>(value.toLongLong(), 0);
    std::int64_t most = 0;
    for (const auto& element : value.toList())
        most = std::max<std::int64_t>(most, element.toLongLong());
    return most;
}

} // namespace

std::optional<ModelFile> ModelFile::read(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const auto entries = readEntries(file);
    ModelFile model;
    model.architecture = entries.value(QStringLiteral("general.architecture")).toString();
    if (model.architecture.isEmpty())
        return std::nullopt;
    model.name = entries.value(QStringLiteral("general.name")).toString();
    model.family = entries.value(QStringLiteral("general.basename")).toString();
    for (const auto& language : entries.value(QStringLiteral("general.languages")).toList())
        model.languages << language.toString();
    model.size = file.size();

    const auto number = [&](const char* key) {
        return largest(entries.value(model.architecture + QLatin1String(key)));
    };
    model.contextLength = number(".context_length");
    model.layers = number(".block_count");
    const auto heads = std::max<std::int64_t>(number(".attention.head_count"), 1);
    const auto headsOfKeys = number(".attention.head_count_kv");
    const auto width = number(".embedding_length") / heads;
    const auto widthOfKeys = number(".attention.key_length");
    const auto widthOfValues = number(".attention.value_length");
    model.widthOfKeysAndValues =
        (headsOfKeys > 0 ? headsOfKeys : heads) *
        ((widthOfKeys > 0 ? widthOfKeys : width) + (widthOfValues > 0 ? widthOfValues : width));
    return model;
}

std::int64_t ModelFile::servedContext() const {
    return contextLength > 0 ? std::min(contextLength, contextOfLongestText) : contextOfLongestText;
}

qint64 ModelFile::memoryNeeded() const {
    constexpr qint64 bytesPerNumber = 2;
    constexpr qint64 besideAllThat = 192LL << 20;
    constexpr double most = 1e15; // a head may say anything
    const auto ofText = static_cast<double>(servedContext()) * static_cast<double>(layers) *
                        static_cast<double>(widthOfKeysAndValues) * bytesPerNumber;
    return size + static_cast<qint64>(std::min(ofText, most)) + besideAllThat;
}

} // namespace talvera
