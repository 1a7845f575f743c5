// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCollator>

/// The order that people expect of names: case does not count, and numbers go by their value.
class NaturalOrder
{
public:
    NaturalOrder() = delete;

    static QCollator collator();
};
