// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxModuleBase.h"

#include <QCoreApplication>

namespace kxKernelInternal {

/// Answers "getUIMaterialNames": what users call the types of materials.
class MaterialModule final : public kxModuleBase
{
    Q_DECLARE_TR_FUNCTIONS(kxMaterials)

public:
    MaterialModule();

private:
    static void answerNames(kxMessage &message);
};

} // namespace kxKernelInternal
