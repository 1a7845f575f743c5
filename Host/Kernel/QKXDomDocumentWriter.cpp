// SPDX-License-Identifier: Apache-2.0
#include "Kernel/QKXDomDocumentWriter.h"

#include "Kernel/Internal/DomTextWriter.h"

#include <QDomDocument>

QString QKXDomDocumentWriter::toString(const QDomDocument &document)
{
    return kxKernelInternal::DomTextWriter().write(document);
}
