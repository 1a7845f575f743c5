// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/NaturalOrder.h"

QCollator NaturalOrder::collator()
{
    // The locale "C" has no order but that of the bytes.
    const QLocale locale;
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}
