// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace kxAssetsInternal {

enum class PayloadAfterwards { Stays, Goes };

/// Starts the external converter on the payload at \a path and returns. Main thread only.
///
/// A payload that goes is removed when the converter has ended, however it ended, and stays when it could not be started.
void startConverter(const QString &path, PayloadAfterwards afterwards);

} // namespace kxAssetsInternal
