// SPDX-License-Identifier: Apache-2.0
#include "FileNameExceptions.h"

namespace architecture {

const std::vector<NameException> &headersWithoutSource()
{
    static const std::vector<NameException> table = {
        {"Apps/Python/Containers.h", "what the sources of bindings share"},
        {"Apps/AssetSession/kxUnsavedPart.h", "plain values"},
        {"Apps/kxassets/ExitCode.h", "an enumeration"},
        {"Host/Import/kxImportedScene.h", "plain values"},
        {"Host/Kernel/Internal/LoadProgress.h", "one-line functions"},
        {"Host/Kernel/kxMessageCodes.h", "constants"},
        {"Host/Kernel/kxNodePtr.h", "a name for a type"},
        {"Host/Kernel/kxRaytracingUtils.h", "two values with one-line functions"},
        {"Host/Kernel/kxSceneplateTypes.h", "an enumeration"},
        {"Host/Rendering/Internal/Ggx.h", "one-line functions of the inner loop"},
        {"Host/Rendering/Internal/Vector.h", "plain values with one-line functions"},
        {"Host/SceneGraph/FCPtr.h", "templates"},
        {"Apps/AssetManager/DragView.h", "a template"},
        {"Apps/AssetManager/ImportOptions.h", "plain values"},
        {"Host/SceneGraph/FieldMacros.h", "macros and templates"},
        {"Host/SceneGraph/Fields.h", "templates"},
        {"Host/SceneGraph/Internal/FieldVisit.h", "templates"},
        {"Host/SceneGraph/Internal/OsbLayout.h", "constants and plain values of the file format"},
        {"Host/SceneGraph/Result.h", "a template"},
        {"Host/SceneGraph/SceneListener.h", "an interface"},
        {"Host/SceneGraph/VectorTypes.h", "plain values with one-line functions"},
        {"Libs/Assets/Internal/HandOver.h", "one-line functions"},
        {"Libs/Assets/Internal/MainThread.h", "a one-line function"},
        {"Libs/Assets/Internal/Unloading.h", "a one-line function and a template"},
        {"Tests/Support/SceneTest.h", "a fixture and one-line functions"},
        {"Tests/Libs/Assets/VirtualTable.h", "a template"},
    };
    return table;
}

const std::vector<NameException> &sourcesWithoutHeader()
{
    static const std::vector<NameException> table = {
        {"Apps/Python/ContainerBindings.cpp", "declared with all others in Containers.h"},
        {"Apps/Python/ImageBindings.cpp", "declared with all others in Containers.h"},
        {"Apps/Python/LibraryBindings.cpp", "declared with all others in Containers.h"},
        {"Apps/Python/Module.cpp", "the module itself"},
        {"Apps/Python/SceneBindings.cpp", "declared with all others in Containers.h"},
        {"Apps/Python/ServiceBindings.cpp", "declared with all others in Containers.h"},
        {"Apps/kxassets/CheckCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/CompactCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/ComposeCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/GroupCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/ImportCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/ListCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/LoadCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/MergeCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/MoveCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/PreviewCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/RemoveCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/RenameCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/RenderCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/SaveCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/ScriptCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/SheetCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/ShowCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/TagCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/TreeCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Apps/kxassets/VerifyCommand.cpp", "a sub-command, declared with all others in Command.h"},
        {"Tests/Apps/AssetSession/SaveLoop.cpp", "a program that a test kills"},
        {"Tests/Host/Kernel/ServiceTestLibrary.cpp", "a library that tests load and unload"},
        {"Tests/Install/Consumer/backEnd.cpp", "a foreign program"},
        {"Tests/Install/Consumer/use.cpp", "a foreign program"},
        {"Tests/Apps/AssetManager/FileManager.cpp", "a program that tests drag files out of"},
        {"Tests/Support/EditAuditProbe.cpp", "a program of one test that has to fail"},
    };
    return table;
}

const std::vector<NameException> &testsOfCapabilities()
{
    static const std::vector<NameException> table = {
        {"Tests/Docs/HostDocumentTest.cpp", "the program of a document"},
        {"Tests/Libs/Assets/PluginTest.cpp", "the library as a whole, loaded and unloaded"},
        {"Tests/Apps/AssetSession/PreviewThreadsTest.cpp", "everything that has threads, at once"},
        {"Tests/Host/Rendering/GoldenPictureTest.cpp", "what the renderer makes, as it was once looked at"},
        {"Tests/Host/Rendering/ScatteringHistogramTest.cpp", "everything that samples directions, against its density"},
        {"Tests/Host/SceneGraph/HostileScenesTest.cpp", "scene files that were made to do harm"},
        {"Tests/Apps/AssetSession/KillTest.cpp", "everything that saves, while the process is killed"},
        {"Tests/Apps/AssetSession/ModelRoundTripTest.cpp", "the whole way of a model, through import, asset and scene"},
        {"Tests/Apps/AssetSession/FaultLoopTest.cpp", "everything that writes, while the disk fails"},
        {"Tests/Libs/Assets/NodesGoWhileSavingTest.cpp", "everything that saves, while nodes of a random scene go"},
        {"Tests/Libs/Assets/PayloadRoundTripTest.cpp", "saving and loading every kind of node of a random scene"},
        {"Tests/Libs/Assets/SavesRestoreTheSceneTest.cpp",
         "everything that saves, and what it leaves of a random scene"},
        {"Tests/Apps/AssetManager/FirstStartTest.cpp", "the program itself, started for the first time"},
        {"Tests/Apps/AssetManager/MonkeyTest.cpp", "the whole window, used at random"},
        {"Tests/Apps/kxassets/LibraryRoundTripTest.cpp",
         "the whole way of a material, through many runs of the program"},
        {"Tests/Architecture/FileTextTest.cpp", "reads the text of every file, which is no class"},
    };
    return table;
}

} // namespace architecture
