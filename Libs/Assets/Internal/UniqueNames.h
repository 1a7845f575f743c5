// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace kxAssetsInternal {

/// Names for an entry of a directory: the wanted one, then its stem with numbers that count up, without a separator.
class UniqueNames
{
public:
    /// \a number is the digits at the end of \a wanted, null for none: counting goes on behind them, else from 0.
    UniqueNames(const QString &wanted, const QString &number);

    const QString &current() const { return _current; }
    void advance();

private:
    QString _current;
    QString _stem;
    qint64 _counter = 0;
};

} // namespace kxAssetsInternal
