// SPDX-License-Identifier: Apache-2.0
#include "FileNameExceptions.h"

namespace architecture {

const std::vector<NameException> &headersWithoutSource()
{
    static const std::vector<NameException> table = {
        {"Host/Import/kxImportedScene.h", "plain values"},
        {"Host/Kernel/kxRaytracingUtils.h", "two values with one-line functions"},
        {"Host/Import/kxImportedScene.h", "a plain value"},
        {"Host/Kernel/kxSceneplateTypes.h", "an enumeration"},
        {"Host/SceneGraph/FCPtr.h", "templates"},
        {"Host/SceneGraph/FieldMacros.h", "macros and templates"},
        {"Host/SceneGraph/Fields.h", "templates"},
        {"Host/SceneGraph/Internal/FieldVisit.h", "templates"},
        {"Host/SceneGraph/Internal/OsbLayout.h", "constants and plain values of the file format"},
        {"Host/SceneGraph/Result.h", "a template"},
        {"Host/SceneGraph/SceneListener.h", "an interface"},
        {"Host/SceneGraph/VectorTypes.h", "plain values with one-line functions"},
        {"Tests/Host/Kernel/SceneTestSupport.h", "a fixture and one-line functions"},
    };
    return table;
}

const std::vector<NameException> &sourcesWithoutHeader()
{
    static const std::vector<NameException> table = {
        {"Tests/Host/Kernel/ServiceTestLibrary.cpp", "a library that tests load and unload"},
        {"Tests/Install/Consumer/use.cpp", "a foreign program"},
        {"Tests/Support/EditAuditProbe.cpp", "a program of one test that has to fail"},
    };
    return table;
}

const std::vector<NameException> &testsOfCapabilities()
{
    static const std::vector<NameException> table = {
        {"Tests/Architecture/FileTextTest.cpp", "reads the text of every file, which is no class"},
    };
    return table;
}

} // namespace architecture
