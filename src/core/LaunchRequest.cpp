// SPDX-License-Identifier: MIT
#include "core/LaunchRequest.h"

namespace talvera {

namespace {

const auto settingsOption = QStringLiteral("--settings");

} // namespace

std::optional<LaunchRequest> LaunchRequest::of(const QStringList& arguments) {
    LaunchRequest request;
    const auto option = arguments.indexOf(settingsOption);
    if (option < 0)
        return request;
    request.opensSettings = true;
    const auto name = arguments.value(option + 1);
    if (name.isEmpty() || name.startsWith(u'-'))
        return request;
    request.section = fromRawValue<SettingsSectionID>(name);
    return request.section ? std::optional(request) : std::nullopt;
}

QStringList LaunchRequest::arguments() const {
    QStringList arguments;
    if (opensSettings)
        arguments << settingsOption;
    if (opensSettings && section)
        arguments << rawValue(*section);
    return arguments;
}

} // namespace talvera
