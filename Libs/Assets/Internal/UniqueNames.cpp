// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/UniqueNames.h"

namespace kxAssetsInternal {

UniqueNames::UniqueNames(const QString &wanted, const QString &number) : _current(wanted), _stem(wanted)
{
    if (number.isNull())
        return;
    _stem.chop(number.size());
    _counter = number.toLongLong() + 1;
}

void UniqueNames::advance()
{
    _current = _stem + QString::number(_counter);
    ++_counter;
}

} // namespace kxAssetsInternal
