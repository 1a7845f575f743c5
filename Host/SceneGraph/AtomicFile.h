// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/SceneGraphExport.h"

#include <cstddef>
#include <memory>
#include <string>

namespace osg {

/// Replaces a file whole or not at all: until commit() succeeded, readers see the old content.
///
/// The bytes go into a hidden file in the same folder, ending in ".part", which is flushed to the disk and takes the
/// target's name and permissions; a link at the target stays and its destination is replaced. Where the folder admits no
/// new file, or the target is a device or pipe, the target itself is written, for a regular file in the last moment and
/// after its space was reserved. A target without write permission is refused.
///
/// What a process that was killed left beside a target is removed when the next file is written in that folder, a minute
/// later at the earliest.
///
/// Texts of errors give the reason alone ("No space left on device"). Any one thread at a time.
class KX_SCENEGRAPH_EXPORT AtomicFile
{
public:
    /// \a path is UTF-8.
    explicit AtomicFile(std::string path);
    /// Without a commit() that succeeded, nothing is left of what was written.
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    /// Expects that the file is not open.
    [[nodiscard]] bool open(std::string &error);

    /// False after a failure, from then on; commit() then fails and gives the reason.
    bool write(const void *data, std::size_t size);

    /// Makes the content visible under the path. The file is closed afterwards, also after a failure.
    [[nodiscard]] bool commit(std::string &error);

    /// Gives up what was written. Without effect when the file is not open.
    void discard();

private:
    class Private;
    std::unique_ptr<Private> _d;
};

/// The whole of it for content that is in memory already.
[[nodiscard]] KX_SCENEGRAPH_EXPORT bool writeFileAtomically(const std::string &path, const void *data, std::size_t size,
                                                            std::string &error);

} // namespace osg
