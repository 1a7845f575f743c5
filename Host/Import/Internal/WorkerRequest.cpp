// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkerRequest.h"

#include <array>
#include <charconv>
#include <string_view>
#include <utility>

namespace kximport {

namespace {

constexpr std::array<std::pair<ImportKind, const char *>, 3> Kinds{
    {{ImportKind::Scene, "scene"}, {ImportKind::Materials, "materials"}, {ImportKind::Environment, "environment"}}};

std::string kindName(ImportKind kind)
{
    for (const auto &[known, name] : Kinds)
        if (known == kind)
            return name;
    return {};
}

std::optional<ImportKind> kindFrom(std::string_view text)
{
    for (const auto &[known, name] : Kinds)
        if (text == name)
            return known;
    return std::nullopt;
}

/// What follows \a option in \a argument; nothing where that is another option.
std::optional<std::string> valueOf(const std::string &argument, const std::string &option)
{
    if (argument.compare(0, option.size(), option) != 0)
        return std::nullopt;
    return argument.substr(option.size());
}

std::optional<std::uint64_t> numberFrom(const std::string &text)
{
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// False for an argument that means nothing.
bool accept(WorkerRequest &request, const std::string &argument)
{
    if (const auto kind = valueOf(argument, "--kind=")) {
        const auto known = kindFrom(*kind);
        request.kind = known.value_or(ImportKind::Scene);
        return known.has_value();
    }
    if (const auto memory = valueOf(argument, "--memory=")) {
        const auto number = numberFrom(*memory);
        request.memory = number.value_or(0);
        return number.has_value();
    }
    for (const auto &[option, target] :
         {std::pair{"--result=", &request.resultFile}, std::pair{"--work-folder=", &request.workFolder},
          std::pair{"--self-test=", &request.selfTest}})
        if (const auto value = valueOf(argument, option)) {
            *target = *value;
            return true;
        }
    return false;
}

} // namespace

std::vector<std::string> WorkerRequest::toArguments() const
{
    std::vector<std::string> arguments{"--kind=" + kindName(kind), "--memory=" + std::to_string(memory),
                                       "--result=" + resultFile, "--work-folder=" + workFolder};
    if (!selfTest.empty())
        arguments.push_back("--self-test=" + selfTest);
    arguments.emplace_back("--");
    arguments.push_back(path);
    return arguments;
}

std::optional<WorkerRequest> WorkerRequest::fromArguments(const std::vector<std::string> &arguments)
{
    // The path comes last and after a mark of its own, since it may look like anything.
    if (arguments.size() < 2 || arguments[arguments.size() - 2] != "--")
        return std::nullopt;
    WorkerRequest request;
    for (std::size_t i = 0; i + 2 < arguments.size(); ++i)
        if (!accept(request, arguments[i]))
            return std::nullopt;
    request.path = arguments.back();
    return request;
}

} // namespace kximport
