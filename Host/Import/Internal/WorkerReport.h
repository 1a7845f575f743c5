// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kximport {

/// What the program that parses says while it works: lines on a descriptor of its own, so that a library that prints
/// does not disturb.
struct WorkerReport
{
    /// Where the lines go in the program that parses.
    static constexpr int Descriptor = 3;
    /// What comes after this many bytes is not kept.
    static constexpr std::size_t MaxBytes = 1 << 20;

    bool isDone = false;
    bool isOutOfMemory = false;
    std::optional<std::string> failure;
    std::vector<std::string> notes;

    /// Lines that mean nothing, and one without an end, are passed over. The text is UTF-8 on one line each, whatever
    /// came: its sender is not to be trusted.
    static WorkerReport parse(std::string_view text);

    static std::string doneLine();
    static std::string noteLine(const std::string &text);
    static std::string failureLine(const std::string &reason);
    /// Needs no memory to be made.
    static std::string_view outOfMemoryLine();
};

} // namespace kximport
