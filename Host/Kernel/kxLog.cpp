// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxLog.h"

#include "Kernel/Internal/StandardError.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <vector>

namespace {

struct LogState
{
    std::mutex mutex;
    kxLogLevel level = kxLogLevel::Info;
    bool standardError = true;
    std::vector<kxLogSink *> sinks;
};

LogState &state()
{
    // Never destroyed: static objects of other libraries may still log while the process ends.
    static LogState *const instance = new LogState;
    return *instance;
}

const char *levelName(kxLogLevel level)
{
    switch (level) {
    case kxLogLevel::Debug:
        return "debug";
    case kxLogLevel::Info:
        return "info";
    case kxLogLevel::Warning:
        return "warning";
    case kxLogLevel::Error:
        break;
    }
    return "error";
}

std::string formatted(const char *format, va_list arguments)
{
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0)
        return format;

    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, arguments);
    text.pop_back();
    return text;
}

/// A file name may hold line ends and escape sequences; on a terminal or in a log file they must not act.
std::string escaped(const std::string &text)
{
    static const char digits[] = "0123456789abcdef";
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (character == '\n')
            result += "\\n";
        else if ((code < 0x20 && character != '\t') || code == 0x7f)
            result.append("\\x").append(1, digits[code >> 4U]).append(1, digits[code & 0xfU]);
        else
            result += character;
    }
    return result;
}

} // namespace

#define KX_LOG_FORMATTED(level)                                                                                        \
    va_list arguments;                                                                                                 \
    va_start(arguments, format);                                                                                       \
    const std::string text = formatted(format, arguments);                                                             \
    va_end(arguments);                                                                                                 \
    write(level, text)

void kxLog::debug(const char *format, ...)
{
    KX_LOG_FORMATTED(kxLogLevel::Debug);
}

void kxLog::info(const char *format, ...)
{
    KX_LOG_FORMATTED(kxLogLevel::Info);
}

void kxLog::warning(const char *format, ...)
{
    KX_LOG_FORMATTED(kxLogLevel::Warning);
}

void kxLog::error(const char *format, ...)
{
    KX_LOG_FORMATTED(kxLogLevel::Error);
}

#undef KX_LOG_FORMATTED

void kxLog::write(kxLogLevel level, const std::string &text)
{
    const bool endsLine = !text.empty() && text.back() == '\n';
    const std::string line = endsLine ? text.substr(0, text.size() - 1) : text;

    LogState &log = state();
    const std::lock_guard<std::mutex> lock(log.mutex);
    if (level < log.level)
        return;
    if (log.standardError)
        kxKernelInternal::writeToStandardError(std::string(levelName(level)) + ": " + escaped(line) + "\n");
    for (kxLogSink *sink : log.sinks)
        sink->write(level, line);
}

kxLogLevel kxLog::level()
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    return state().level;
}

void kxLog::setLevel(kxLogLevel lowest)
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().level = lowest;
}

bool kxLog::isStandardErrorEnabled()
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    return state().standardError;
}

void kxLog::enableStandardError(bool enabled)
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().standardError = enabled;
}

void kxLog::addSink(kxLogSink *sink)
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    auto &sinks = state().sinks;
    if (sink && std::find(sinks.begin(), sinks.end(), sink) == sinks.end())
        sinks.push_back(sink);
}

void kxLog::removeSink(kxLogSink *sink)
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    auto &sinks = state().sinks;
    sinks.erase(std::remove(sinks.begin(), sinks.end(), sink), sinks.end());
}
