// SPDX-License-Identifier: Apache-2.0
#include "kxassets/ProgressLine.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <utility>

namespace {

constexpr auto Interval = std::chrono::milliseconds(100);

std::string durationText(double seconds)
{
    std::array<char, 32> text{};
    const auto whole = static_cast<long>(seconds + 0.5);
    if (whole < 60)
        std::snprintf(text.data(), text.size(), "%ld s", whole);
    else
        std::snprintf(text.data(), text.size(), "%ld:%02ld min", whole / 60, whole % 60);
    return text.data();
}

std::string rateText(double rate)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), rate < 10 ? "%.1f" : "%.0f", rate);
    return text.data();
}

} // namespace

ProgressLine::ProgressLine(std::string task, std::string what)
    : _task(std::move(task)), _what(std::move(what)), _isTerminal(::isatty(STDERR_FILENO) == 1)
{}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::show(std::size_t done, std::size_t total)
{
    const Clock::time_point now = Clock::now();
    if (!_isTerminal || (_isShown && now - _shown < Interval))
        return;
    _isShown = true;
    _shown = now;

    std::string text = _task + ": " + std::to_string(done);
    if (total > 0)
        text += " of " + std::to_string(total);
    text += ' ' + _what;
    const double seconds = std::chrono::duration<double>(now - _start).count();
    if (done > 0 && seconds > 0.5) {
        const double rate = static_cast<double>(done) / seconds;
        text += ", " + rateText(rate) + " a second";
        if (total > done)
            text += ", " + durationText(static_cast<double>(total - done) / rate) + " left";
    }
    std::fprintf(stderr, "\r\033[K%s", text.c_str());
    std::fflush(stderr);
}

void ProgressLine::clear()
{
    if (!_isShown)
        return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    _isShown = false;
}
