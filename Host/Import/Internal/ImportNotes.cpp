// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/ImportNotes.h"

#include "Import/Internal/ForeignText.h"

#include <utility>

namespace kximport {

ImportNotes::ImportNotes(std::string modelPath) : _modelPath(std::move(modelPath)) {}

void ImportNotes::add(const std::string &text)
{
    if (_lines.size() >= MaxLines)
        return;
    const std::string line = "'" + _modelPath + "': " + oneLine(text);
    if (_known.insert(line).second)
        _lines.push_back(line);
}

} // namespace kximport
