// SPDX-License-Identifier: MIT
#include "Driver.h"

#include <istream>
#include <ostream>

namespace talvera::conformance {

namespace {

/// Deeper requests make no sense, and an answer that repeats one would be written recursively.
constexpr int deepestNesting = 100;

nlohmann::json parsed(std::string_view line) {
    const auto limitDepth = [](int depth, nlohmann::json::parse_event_t, nlohmann::json&) {
        if (depth > deepestNesting)
            throw BadRequest("nested too deeply");
        return true;
    };
    try {
        return nlohmann::json::parse(line, limitDepth);
    } catch (const nlohmann::json::exception&) {
        throw BadRequest("not JSON");
    }
}

Answer error(const std::string& text) {
    return {{"error", text}};
}

} // namespace

void Driver::add(const std::string& name, Operation operation) {
    m_operations[name] = std::move(operation);
}

Answer Driver::answerTo(const Request& request) const {
    try {
        const auto& name = request.value("op");
        if (!name.is_string())
            throw BadRequest("\"op\" must be a string");
        const auto operation = m_operations.find(name.get<std::string>());
        return operation != m_operations.end() ? operation->second(request) : error("unknown op");
    } catch (const BadRequest& bad) {
        return error(std::string("bad request: ") + bad.what());
    } catch (const std::exception& failure) {
        return error(std::string("failed: ") + failure.what());
    }
}

std::string Driver::answer(std::string_view line) const {
    Answer answer;
    try {
        const auto json = parsed(line);
        const Request request(json);
        if (const auto id = request.json().find("id"); id != request.json().end())
            answer["id"] = *id;
        answer.update(answerTo(request));
    } catch (const BadRequest& bad) {
        answer = error(std::string("bad request: ") + bad.what());
    }
    return answer.dump(-1, ' ', false, Answer::error_handler_t::replace);
}

void Driver::run(std::istream& requests, std::ostream& answers) const {
    for (std::string line; std::getline(requests, line);)
        answers << answer(line) << '\n' << std::flush;
}

} // namespace talvera::conformance
