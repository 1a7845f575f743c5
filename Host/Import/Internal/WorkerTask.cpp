// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkerTask.h"

#include "Import/Internal/ImportNotes.h"
#include "Import/Internal/Misbehaviour.h"
#include "Import/Internal/SceneReader.h"
#include "Import/Internal/WorkerReport.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/SceneFile.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

namespace kximport {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KX_HAS_SHADOW_MEMORY
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KX_HAS_SHADOW_MEMORY
#endif
#endif

constexpr int FailedExit = 1;

void say(std::string_view line)
{
    while (!line.empty()) {
        const ssize_t count = write(WorkerReport::Descriptor, line.data(), line.size());
        if (count <= 0)
            return; // nobody listens any more
        line.remove_prefix(static_cast<std::size_t>(count));
    }
}

int fail(const std::string &reason)
{
    say(WorkerReport::failureLine(reason));
    return FailedExit;
}

/// The parsers would make an odd message of an exception, or crash on one they do not expect.
[[noreturn]] void reportMemory()
{
    say(WorkerReport::outOfMemoryLine());
    _exit(FailedExit);
}

void setLimit(decltype(RLIMIT_AS) resource, rlim_t value)
{
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max = value < limit.rlim_max ? value : limit.rlim_max;
    setrlimit(resource, &limit);
}

osg::FCRef<osg::MaterialPool> poolOf(const std::vector<osg::FCRef<osg::Material>> &materials)
{
    osg::FCRef<osg::MaterialPool> pool(osg::MaterialPool::create());
    const osg::CPEditor edit(pool.get(), osg::MaterialPool::MaterialsFieldMask);
    for (const auto &material : materials)
        pool->editMaterials().push_back(material);
    return pool;
}

} // namespace

WorkerTask::WorkerTask(WorkerRequest request) : _request(std::move(request)) {}

int WorkerTask::run() const
{
    limitItself();
    if (!_request.selfTest.empty())
        return misbehave(_request);
    try {
        return convert();
    } catch (const std::exception &error) {
        return fail(error.what());
    }
}

void WorkerTask::limitItself() const
{
    // Whoever started this program is gone: so is the purpose.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    setLimit(RLIMIT_CORE, 0);
    if (_request.memory > 0) {
        setLimit(RLIMIT_FSIZE, _request.memory);
#if !defined(KX_HAS_SHADOW_MEMORY)
        setLimit(RLIMIT_AS, _request.memory);
#endif
    }
    std::set_new_handler(reportMemory);
}

int WorkerTask::convert() const
{
    ImportNotes notes(_request.path);
    osg::SceneRoots roots;
    if (_request.kind == ImportKind::Environment) {
        const auto environment = readForeignEnvironment(_request.path);
        if (!environment)
            return fail(environment.reason());
        roots.emplace_back(environment.value().get());
    } else {
        const auto scene = readForeignScene(_request.path, _request.kind, _request.workFolder, notes);
        if (!scene)
            return fail(scene.reason());
        if (_request.kind == ImportKind::Scene)
            roots.emplace_back(scene.value().root.get());
        roots.emplace_back(poolOf(scene.value().materials).get());
    }

    const std::vector<osg::FieldContainerPtr> handles(roots.begin(), roots.end());
    if (const osg::Result<void> written = osg::writeSceneFile(_request.resultFile, handles); !written)
        return fail("the result cannot be handed over: " + written.reason());
    for (const std::string &note : notes.lines())
        say(WorkerReport::noteLine(note));
    say(WorkerReport::doneLine());
    return 0;
}

} // namespace kximport
