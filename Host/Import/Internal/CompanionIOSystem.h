// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/Internal/CompanionFiles.h"
#include "Import/Internal/ImportNotes.h"

#include <assimp/DefaultIOSystem.h>

#include <string>

namespace kximport {

/// Opens for the parsers what a model refers to, also where the reference is written for another system.
///
/// Text files in UTF-16 are handed over as UTF-8, and blanks before the numbers of a Collada element are dropped: the
/// parsers stumble over both. Only regular files are opened, for reading.
class CompanionIOSystem final : public Assimp::DefaultIOSystem
{
public:
    /// Missing material libraries are noted; other missing files the parsers report themselves.
    CompanionIOSystem(std::string modelPath, ImportNotes &notes);

    bool Exists(const char *file) const override;
    Assimp::IOStream *Open(const char *file, const char *mode) override;

private:
    /// "" where there is no such file.
    std::string resolved(const std::string &file) const;

    std::string _modelPath;
    CompanionFiles _companions;
    ImportNotes &_notes;
};

} // namespace kximport
