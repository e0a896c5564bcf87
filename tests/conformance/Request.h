// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <nlohmann/json.hpp>

#include <cmath>
#include <concepts>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace talvera::conformance {

/// What a request asks can't be understood; `what()` says why.
class BadRequest : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The fields of a request, or of an object within one. Every read checks presence and type, and throws
/// BadRequest. A field that may be absent may also be null. It refers to the JSON that it was made from.
class Request {
public:
    explicit Request(const nlohmann::json& value);
    explicit Request(nlohmann::json&&) = delete;

    /// The field is there and not null.
    bool has(const char* field) const;

    QString text(const char* field) const;
    bool truth(const char* field) const;
    double number(const char* field) const;
    QStringList texts(const char* field) const;
    std::vector<double> numbers(const char* field) const;
    Request object(const char* field) const;
    std::vector<Request> objects(const char* field) const;
    /// The field as it stands, for what no other accessor reads.
    const nlohmann::json& value(const char* field) const;
    const nlohmann::json& array(const char* field) const;

    /// A whole number that fits into `Integer`.
    template <std::integral Integer>
    Integer integer(const char* field) const {
        return integerFrom<Integer>(value(field), field);
    }

    std::optional<QString> optionalText(const char* field) const;
    std::optional<double> optionalNumber(const char* field) const;
    template <std::integral Integer>
    std::optional<Integer> optionalInteger(const char* field) const {
        return has(field) ? std::optional(integer<Integer>(field)) : std::nullopt;
    }

    /// The text's counterpart as `fromName` tells it: std::optional<T>(const QString&).
    template <typename FromName>
    auto named(const char* field, FromName fromName) const {
        const auto found = fromName(text(field));
        if (!found)
            throw BadRequest(std::string("unknown value of \"") + field + '"');
        return *found;
    }

    /// All fields.
    const nlohmann::json& json() const { return *m_json; }

    /// `value` as a whole number; `name` is for the complaint.
    template <std::integral Integer>
    static Integer integerFrom(const nlohmann::json& value, const std::string& name) {
        const auto complain = [&name] {
            throw BadRequest('"' + name + "\" must be a whole number in range");
        };
        using Limits = std::numeric_limits<Integer>;
        if (value.is_number_unsigned()) {
            const auto number = value.get<std::uint64_t>();
            if (!std::in_range<Integer>(number))
                complain();
            return static_cast<Integer>(number);
        }
        if (value.is_number_integer()) {
            const auto number = value.get<std::int64_t>();
            if (!std::in_range<Integer>(number))
                complain();
            return static_cast<Integer>(number);
        }
        // Some writers put every number down as 2.0.
        const double number = value.is_number() ? value.get<double>() : 0.5;
        if (!(number >= static_cast<double>(Limits::min())) || !(number < std::ldexp(1.0, Limits::digits)) ||
            number != std::floor(number))
            complain();
        return static_cast<Integer>(number);
    }

private:
    const nlohmann::json* m_json;
};

/// A text of a JSON value, which must be one.
QString toText(const nlohmann::json& value, const std::string& name);

} // namespace talvera::conformance
