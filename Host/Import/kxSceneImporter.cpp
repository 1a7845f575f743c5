// SPDX-License-Identifier: Apache-2.0
#include "Import/kxSceneImporter.h"

#include "Import/Internal/WorkFolder.h"
#include "Import/Internal/WorkerProcess.h"
#include "Import/Internal/WorkerProgram.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SceneLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace {

using kximport::ImportKind;

std::string systemReason(int error)
{
    return std::generic_category().message(error);
}

/// The size of a file that can be read; the reason where it is none.
osg::Result<std::uint64_t> readableSize(const std::string &path)
{
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return osg::Failure{systemReason(errno)};
    struct stat status
    {};
    const int error = fstat(file, &status) == 0 ? 0 : errno;
    close(file);
    if (error != 0)
        return osg::Failure{systemReason(error)};
    if (S_ISDIR(status.st_mode))
        return osg::Failure{"it is a folder"};
    if (!S_ISREG(status.st_mode))
        return osg::Failure{"it is no ordinary file"};
    if (status.st_size <= 0)
        return osg::Failure{"the file is empty"};
    return static_cast<std::uint64_t>(status.st_size);
}

/// Has the file parsed, and reads what came of it.
osg::Result<osg::SceneRoots> parseApart(const std::string &path, ImportKind kind, const kxImportLimits &limits,
                                        const std::function<bool()> &goOn)
{
    const osg::Result<std::uint64_t> size = readableSize(path);
    if (!size)
        return osg::Failure{size.reason()};
    const std::string program = kximport::WorkerProgram::find();
    if (program.empty())
        return osg::Failure{std::string("the program ") + kximport::WorkerProgram::Name + " is not installed"};
    const kximport::WorkFolder folder;
    if (folder.path().empty())
        return osg::Failure{folder.error()};

    const kxImportLimits resolved = limits.resolved(size.value());
    kximport::WorkerRequest request;
    request.kind = kind;
    request.path = path;
    request.resultFile = folder.path() + "/result.osb";
    request.workFolder = folder.path();
    request.memory = resolved.memory;
    const auto notes = kximport::WorkerProcess(program, resolved, goOn).run(request);
    if (!notes)
        return osg::Failure{notes.reason()};

    osg::Result<osg::SceneRoots> roots = osg::readSceneFile(request.resultFile);
    if (roots)
        for (const std::string &note : notes.value())
            osg::logLine(osg::LogLevel::Warning, note);
    return roots;
}

osg::Failure failure(const std::string &path, const std::string &reason)
{
    return osg::Failure{"Cannot import '" + path + "': " + reason};
}

osg::Failure strangeResult(const std::string &path)
{
    return failure(path, "the parser handed over something else than what was asked for");
}

std::vector<osg::FCRef<osg::Material>> materialsOf(const osg::MaterialPoolPtr &pool)
{
    std::vector<osg::FCRef<osg::Material>> materials;
    for (const osg::MaterialPtr &material : pool->getMaterials())
        if (material)
            materials.emplace_back(material);
    return materials;
}

} // namespace

kxSceneImporter::kxSceneImporter(const kxImportLimits &limits, std::function<bool()> goOn)
    : _limits(limits), _goOn(std::move(goOn))
{}

void kxSceneImporter::setWorkerProgram(const std::string &path)
{
    kximport::WorkerProgram::set(path);
}

osg::Result<kxImportedScene> kxSceneImporter::importScene(const std::string &path) const
{
    const osg::Result<osg::SceneRoots> roots = parseApart(path, ImportKind::Scene, _limits, _goOn);
    if (!roots)
        return failure(path, roots.reason());
    const bool hasBoth = roots.value().size() == 2;
    const auto root = hasBoth ? osg::dcast<osg::NodePtr>(roots.value()[0].get()) : osg::NodePtr();
    const auto pool = hasBoth ? osg::dcast<osg::MaterialPoolPtr>(roots.value()[1].get()) : osg::MaterialPoolPtr();
    if (!root || !pool)
        return strangeResult(path);
    return kxImportedScene{root, materialsOf(pool)};
}

osg::Result<std::vector<osg::FCRef<osg::Material>>> kxSceneImporter::importMaterials(const std::string &path) const
{
    const osg::Result<osg::SceneRoots> roots = parseApart(path, ImportKind::Materials, _limits, _goOn);
    if (!roots)
        return failure(path, roots.reason());
    const auto pool =
        roots.value().size() == 1 ? osg::dcast<osg::MaterialPoolPtr>(roots.value()[0].get()) : osg::MaterialPoolPtr();
    if (!pool)
        return strangeResult(path);
    return materialsOf(pool);
}

osg::Result<osg::FCRef<osg::USphereEnvironmentMaterial>>
kxSceneImporter::importEnvironment(const std::string &path) const
{
    const osg::Result<osg::SceneRoots> roots = parseApart(path, ImportKind::Environment, _limits, _goOn);
    if (!roots)
        return failure(path, roots.reason());
    const auto environment = roots.value().size() == 1
                                 ? osg::dcast<osg::USphereEnvironmentMaterialPtr>(roots.value()[0].get())
                                 : osg::USphereEnvironmentMaterialPtr();
    if (!environment)
        return strangeResult(path);
    return osg::FCRef<osg::USphereEnvironmentMaterial>(environment);
}
