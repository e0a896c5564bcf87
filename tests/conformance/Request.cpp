// SPDX-License-Identifier: MIT
#include "Request.h"

namespace talvera::conformance {

namespace {

void require(bool condition, const char* field, const char* what) {
    if (!condition)
        throw BadRequest('"' + std::string(field) + "\" must be " + what);
}

} // namespace

QString toText(const nlohmann::json& value, const std::string& name) {
    require(value.is_string(), name.c_str(), "a string");
    return QString::fromStdString(value.get_ref<const std::string&>());
}

Request::Request(const nlohmann::json& value)
    : m_json(&value) {
    if (!m_json->is_object())
        throw BadRequest("not an object");
}

bool Request::has(const char* field) const {
    const auto found = m_json->find(field);
    return found != m_json->end() && !found->is_null();
}

const nlohmann::json& Request::value(const char* field) const {
    const auto found = m_json->find(field);
    if (found == m_json->end())
        throw BadRequest('"' + std::string(field) + "\" is missing");
    return *found;
}

const nlohmann::json& Request::array(const char* field) const {
    const auto& list = value(field);
    require(list.is_array(), field, "an array");
    return list;
}

QString Request::text(const char* field) const {
    return toText(value(field), field);
}

bool Request::truth(const char* field) const {
    require(value(field).is_boolean(), field, "true or false");
    return value(field).get<bool>();
}

double Request::number(const char* field) const {
    require(value(field).is_number(), field, "a number");
    return value(field).get<double>();
}

QStringList Request::texts(const char* field) const {
    QStringList texts;
    for (const auto& item : array(field))
        texts << toText(item, field);
    return texts;
}

std::vector<double> Request::numbers(const char* field) const {
    std::vector<double> numbers;
    for (const auto& item : array(field)) {
        require(item.is_number(), field, "an array of numbers");
        numbers.push_back(item.get<double>());
    }
    return numbers;
}

Request Request::object(const char* field) const {
    require(value(field).is_object(), field, "an object");
    return Request(value(field));
}

std::vector<Request> Request::objects(const char* field) const {
    std::vector<Request> objects;
    for (const auto& item : array(field)) {
        require(item.is_object(), field, "an array of objects");
        objects.emplace_back(item);
    }
    return objects;
}

std::optional<QString> Request::optionalText(const char* field) const {
    return has(field) ? std::optional(text(field)) : std::nullopt;
}

std::optional<double> Request::optionalNumber(const char* field) const {
    return has(field) ? std::optional(number(field)) : std::nullopt;
}

} // namespace talvera::conformance
