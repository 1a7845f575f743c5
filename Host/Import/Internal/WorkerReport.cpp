// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkerReport.h"

#include "Import/Internal/ForeignText.h"

namespace kximport {

namespace {

constexpr std::string_view Note = "note ";
constexpr std::string_view Failed = "failed ";
constexpr std::string_view OutOfMemory = "out of memory";
constexpr std::string_view Done = "done";

bool startsWith(std::string_view line, std::string_view start)
{
    return line.substr(0, start.size()) == start;
}

void take(WorkerReport &report, std::string_view line)
{
    if (line == Done)
        report.isDone = true;
    else if (line == OutOfMemory)
        report.isOutOfMemory = true;
    else if (startsWith(line, Note))
        report.notes.push_back(oneLine(line.substr(Note.size())));
    else if (startsWith(line, Failed))
        report.failure = oneLine(line.substr(Failed.size()));
}

} // namespace

WorkerReport WorkerReport::parse(std::string_view text)
{
    WorkerReport report;
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        take(report, text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    return report;
}

std::string WorkerReport::doneLine()
{
    return std::string(Done) + "\n";
}

std::string WorkerReport::noteLine(const std::string &text)
{
    return std::string(Note) + oneLine(text) + "\n";
}

std::string WorkerReport::failureLine(const std::string &reason)
{
    return std::string(Failed) + oneLine(reason) + "\n";
}

std::string_view WorkerReport::outOfMemoryLine()
{
    return "out of memory\n";
}

} // namespace kximport
