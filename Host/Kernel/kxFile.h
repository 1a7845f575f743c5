// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Files by their paths, which are null-terminated UTF-8.
///
/// Safe on any thread. No operation throws; null paths count as empty ones, which name nothing.
class KX_KERNEL_EXPORT kxFile
{
public:
    kxFile() = delete;

    /// \a path with a leading "~" and the variables "$NAME" and "${NAME}" replaced by what they stand for. Unknown
    /// variables stay, and so does the whole path when something of exactly that name exists.
    static std::string expandFilename(const char *path);

    /// Whether the file may be written: it is there, no folder and writable, or it can be made in an existing folder.
    /// With \a mustBeNew an existing file is denied. With \a report a denial is logged with its reason.
    static bool checkWrite(const char *path, bool mustBeNew, bool report);

    /// The CRC-32 (reflected, polynomial 0x04C11DB7) of the file's bytes, read in pieces. \a previous is the checksum of
    /// what comes before the file, 0 for nothing. 0, with an error in the log, when the file cannot be read.
    static std::uint32_t getChecksum(const char *path, std::uint32_t previous);

    /// The same checksum of bytes in memory.
    static std::uint32_t getChecksum(std::string_view bytes, std::uint32_t previous);

    /// A name for a file or folder that every system accepts, as near to \a name as possible (both UTF-8): letters of any
    /// script stay, what Windows, macOS or Linux refuse and what would act as a wildcard becomes "_". Never empty, hidden
    /// or reserved, without a dot or blank at its end, at most 200 bytes long. A name that is valid comes back as it is.
    static std::string makeValidFileName(const std::string &name);

    /// Whether something is there. With \a expand the path goes through expandFilename() first; with \a countDanglingLinks
    /// a link is something even when its destination is missing.
    static bool exists(const char *path, bool expand, bool countDanglingLinks);

    /// Removes a file, or a link but not its destination. False for a folder and for what is not there.
    static bool remove(const char *path);

    /// Replaces the file whole or not at all. On failure \a error gets the reason, and nothing is logged.
    static bool write(const char *path, std::string_view content, std::string &error);
};
