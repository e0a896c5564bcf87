// SPDX-License-Identifier: MIT
#include "linux/xdg/JsonPreferenceStore.h"

#include "linux/support/replaceFile.h"
#include "platform/system/PlatformError.h"

#include <QFileInfo>

#include <nlohmann/json.hpp>

#include <atomic>
#include <utility>

namespace talvera {

namespace {

using nlohmann::json;

constexpr auto formatName = "talvera-preferences";
constexpr int formatVersion = 1;
constexpr qint64 largestFile = 16 * 1024 * 1024;
constexpr int deepestNesting = 50;

/// Why a file is none of ours.
struct Unusable {
    QString reason;
};

json emptyDocument() {
    return {{"format", formatName}, {"version", formatVersion}, {"preferences", json::object()}};
}

json parsedDocument(const QByteArray& bytes) {
    const auto limitDepth = [](int depth, json::parse_event_t, json&) {
        if (depth > deepestNesting)
            throw Unusable{QStringLiteral("nested too deeply")};
        return true;
    };
    json document;
    try {
        document = json::parse(bytes.begin(), bytes.end(), limitDepth);
    } catch (const json::exception&) {
        throw Unusable{QStringLiteral("not valid JSON")};
    }
    if (!document.is_object() || document.value("format", json()) != formatName)
        throw Unusable{QStringLiteral("not a file of preferences")};
    if (document.value("version", json()) != formatVersion)
        throw Unusable{QStringLiteral("of an unknown version")};
    if (!document.value("preferences", json()).is_object())
        throw Unusable{QStringLiteral("without preferences")};
    return document;
}

json encoded(const PreferenceValue& value) {
    struct Encoder {
        json operator()(bool truth) const { return truth; }
        json operator()(std::int64_t number) const { return number; }
        json operator()(double number) const { return number; } // always written with a point or an exponent
        json operator()(const QString& text) const { return text.toStdString(); }
        json operator()(const QByteArray& data) const { return {{"data", data.toBase64().toStdString()}}; }
        json operator()(const QStringList& texts) const {
            auto list = json::array();
            for (const auto& text : texts)
                list.push_back(text.toStdString());
            return list;
        }
    };
    return std::visit(Encoder{}, value);
}

QString toText(const json& value) {
    return QString::fromStdString(value.get_ref<const std::string&>());
}

std::optional<PreferenceValue> decodedTexts(const json& list) {
    QStringList texts;
    for (const auto& item : list) {
        if (!item.is_string())
            return std::nullopt;
        texts << toText(item);
    }
    return texts;
}

std::optional<PreferenceValue> decodedData(const json& object) {
    const auto base64 = object.find("data");
    if (object.size() != 1 || base64 == object.end() || !base64->is_string())
        return std::nullopt;
    const auto result = QByteArray::fromBase64Encoding(QByteArray::fromStdString(base64->get<std::string>()),
                                                       QByteArray::AbortOnBase64DecodingErrors);
    return result ? std::optional<PreferenceValue>(*result) : std::nullopt;
}

/// Nothing for a form that this version does not know.
std::optional<PreferenceValue> decoded(const json& value) {
    switch (value.type()) {
    case json::value_t::boolean:
        return value.get<bool>();
    case json::value_t::number_integer:
        return value.get<std::int64_t>();
    case json::value_t::number_unsigned:
        if (std::in_range<std::int64_t>(value.get<std::uint64_t>()))
            return value.get<std::int64_t>();
        return std::nullopt;
    case json::value_t::number_float:
        return value.get<double>();
    case json::value_t::string:
        return toText(value);
    case json::value_t::array:
        return decodedTexts(value);
    case json::value_t::object:
        return decodedData(value);
    default:
        return std::nullopt;
    }
}

} // namespace

/// The file, and what stands in its way. Used by one thread at a time: the main thread loads, then the writer
/// saves.
class JsonPreferenceStore::File {
public:
    File(const QString& directory, FileSystem& files, Console& console)
        : m_directory(directory)
        , m_path(directory + QStringLiteral("/preferences.json"))
        , m_files(files)
        , m_console(console) {}

    json load() {
        try {
            return read();
        } catch (const Unusable& file) {
            m_inTheWay = true;
            m_console.log(QStringLiteral("[settings] %1 is %2").arg(m_path, file.reason));
        }
        try {
            clearTheWay();
        } catch (const PlatformError& error) {
            m_console.log(QStringLiteral("[settings] it can't be set aside: %1").arg(error.message()));
        }
        return emptyDocument();
    }

    void save(const QByteArray& bytes) {
        try {
            clearTheWay();
            m_files.createDirectories(m_directory);
            replaceFile(m_path, bytes);
            m_failing = false;
        } catch (const PlatformError& error) {
            if (!m_failing.exchange(true))
                m_console.log(QStringLiteral("[settings] not saved: %1").arg(error.message()));
        }
    }

    /// The last attempt to save failed. Any thread.
    bool isFailing() const { return m_failing; }

private:
    json read() {
        try {
            if (m_files.size(m_path).value_or(0) > largestFile)
                throw Unusable{QStringLiteral("too large")};
            return parsedDocument(m_files.read(m_path));
        } catch (const PlatformError& error) {
            if (error.is(std::errc::no_such_file_or_directory) && !QFileInfo(m_path).isSymLink())
                return emptyDocument(); // the first launch
            throw Unusable{QStringLiteral("unreadable: %1").arg(error.message())};
        }
    }

    void clearTheWay() {
        if (!std::exchange(m_inTheWay, false))
            return;
        try {
            m_console.log(
                QStringLiteral("[settings] set aside as %1; the defaults apply").arg(setAside(m_path)));
        } catch (const PlatformError& error) {
            m_inTheWay = !error.is(std::errc::no_such_file_or_directory);
            if (m_inTheWay)
                throw;
        }
    }

    QString m_directory;
    QString m_path;
    FileSystem& m_files;
    Console& m_console;
    bool m_inTheWay = false; ///< what stands there isn't ours, and could not be set aside yet
    std::atomic<bool> m_failing = false;
};

JsonPreferenceStore::JsonPreferenceStore(const QString& directory, FileSystem& files, MainActor& actor,
                                         SerialQueue& writer, Console& console)
    : m_actor(actor)
    , m_writer(writer)
    , m_file(std::make_shared<File>(directory, files, console))
    , m_document(std::make_unique<json>(m_file->load())) {}

JsonPreferenceStore::~JsonPreferenceStore() {
    if (m_isWritePending || m_file->isFailing())
        write();
}

json& JsonPreferenceStore::preferences() const {
    return (*m_document)["preferences"];
}

std::optional<PreferenceValue> JsonPreferenceStore::object(const QString& key) const {
    const auto found = preferences().find(key.toStdString());
    return found != preferences().end() ? decoded(*found) : std::nullopt;
}

void JsonPreferenceStore::set(const QString& key, const PreferenceValue& value) {
    if (object(key) == value && !m_file->isFailing())
        return;
    preferences()[key.toStdString()] = encoded(value);
    changed();
}

void JsonPreferenceStore::remove(const QString& key) {
    if (preferences().erase(key.toStdString()) > 0 || m_file->isFailing())
        changed();
}

void JsonPreferenceStore::changed() {
    if (!std::exchange(m_isWritePending, true))
        m_actor.post(m_lifetime.ifAlive([this] { write(); }));
}

void JsonPreferenceStore::write() {
    m_isWritePending = false;
    const auto text = m_document->dump(2, ' ', false, json::error_handler_t::replace) + '\n';
    m_writer.async([file = m_file, bytes = QByteArray::fromStdString(text)] { file->save(bytes); });
}

} // namespace talvera
