// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <QString>

class QDomDocument;

/// Writes DOM documents as text that is the same for the same document, everywhere and every time.
class KX_KERNEL_EXPORT QKXDomDocumentWriter
{
public:
    QKXDomDocumentWriter() = delete;

    /// The document as XML 1.0, meant to be stored as UTF-8, which it always declares.
    ///
    /// One element per line, indented by two blanks for each of the first 50 levels; inside an element that holds text
    /// nothing is added. Attributes come in the order of their names. Characters that XML cannot carry, and elements and
    /// attributes without a valid name, are left out, and so are the declarations inside a document type. Any depth of
    /// nesting is written without recursion.
    static QString toString(const QDomDocument &document);
};
