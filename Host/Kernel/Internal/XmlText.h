// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace kxKernelInternal {

/// \a text without the characters that XML 1.0 has no form for: controls, lone surrogates, noncharacters.
QString carriable(const QString &text);

/// Element text and attribute values with markup and line ends escaped, so that a reader gets back the same text.
QString escapedText(const QString &text);
QString escapedAttribute(const QString &value);

/// Whether \a name may name an element, attribute or instruction.
bool isXmlName(const QString &name);

} // namespace kxKernelInternal
