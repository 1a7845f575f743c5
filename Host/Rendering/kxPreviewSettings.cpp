// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxPreviewSettings.h"

#include <algorithm>

namespace {

int theSize = 512;
int theSamples = 16;

} // namespace

int kxPreviewSettings::size()
{
    return theSize;
}

void kxPreviewSettings::setSize(int size)
{
    theSize = std::clamp(size, 16, 4096);
}

int kxPreviewSettings::samples()
{
    return theSamples;
}

void kxPreviewSettings::setSamples(int samples)
{
    theSamples = std::clamp(samples, 1, 65536);
}
