// SPDX-License-Identifier: MIT
#pragma once

#include "Request.h"

#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>

namespace talvera::conformance {

/// An answer's fields keep the order in which they are set.
using Answer = nlohmann::ordered_json;

/// Decodes its request, calls production code, and encodes what that gave. May throw BadRequest.
using Operation = std::function<Answer(const Request&)>;

/// Answers requests, one JSON object a line.
class Driver {
public:
    void add(const std::string& name, Operation operation);

    /// The answer to one line, without a line feed. Never throws.
    std::string answer(std::string_view line) const;

    /// Answers line by line until the input ends.
    void run(std::istream& requests, std::ostream& answers) const;

private:
    Answer answerTo(const Request& request) const;

    std::map<std::string, Operation> m_operations;
};

} // namespace talvera::conformance
