// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxLogSink.h"

#if defined(__GNUC__)
#define KX_PRINTF_FORMAT(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define KX_PRINTF_FORMAT(formatIndex, firstArgument)
#endif

/// The host log: messages for the user, printf-style, texts as UTF-8.
///
/// Safe on any thread. A message is one line whatever it ends with; it reaches every sink, and standard error unless that
/// was switched off, as a whole.
class KX_KERNEL_EXPORT kxLog
{
public:
    kxLog() = delete;

    static void debug(const char *format, ...) KX_PRINTF_FORMAT(1, 2);
    static void info(const char *format, ...) KX_PRINTF_FORMAT(1, 2);
    static void warning(const char *format, ...) KX_PRINTF_FORMAT(1, 2);
    static void error(const char *format, ...) KX_PRINTF_FORMAT(1, 2);

    /// Writes \a text as it stands; percent signs in it mean nothing.
    static void write(kxLogLevel level, const std::string &text);

    /// Lines below the level are dropped; Info at first, so that debug lines have to be asked for.
    static kxLogLevel level();
    static void setLevel(kxLogLevel lowest);

    /// Standard error gets each line with its level in front ("error: ..."), control characters escaped. On at first.
    static bool isStandardErrorEnabled();
    static void enableStandardError(bool enabled);

    /// The log does not own the sink, which has to stay alive until it is removed. Adding a sink twice has no effect.
    static void addSink(kxLogSink *sink);
    static void removeSink(kxLogSink *sink);
};
