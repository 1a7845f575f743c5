// SPDX-License-Identifier: Apache-2.0
#include "ActionModule.h"
#include "Assets/kxCreateGroupedNodes.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxLocalUrlManager.h"
#include "Assets/kxSaveEnvironment.h"
#include "Assets/kxSaveNode.h"
#include "Kernel/kxModuleBase.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "RandomSceneFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/NameAttachment.h"

#include <gmock/gmock.h>

#include <functional>
#include <set>
#include <utility>

namespace {

using testing::IsEmpty;

using Meanwhile = std::function<void()>;

/// Has something happen when the host is asked for actions or previews, once.
class BusyModule final : public kxModuleBase
{
public:
    explicit BusyModule(Meanwhile meanwhile) : _meanwhile(std::move(meanwhile))
    {
        registerHandler("renderPreviewImages", [this](kxMessage &) { happen(); });
    }
    ~BusyModule() override { happen(); }

private:
    void doReceive(const kxMessage &) override { happen(); }
    void happen()
    {
        if (const Meanwhile meanwhile = std::exchange(_meanwhile, nullptr))
            meanwhile();
    }

    Meanwhile _meanwhile;
};

/// What was prepared for saving and loses nodes before that is undone: the rest is restored.
class NodesGoWhileSavingTest : public RandomSceneFixture
{
protected:
    /// Prepares something, lets happen what is to happen, and undoes what it did.
    using Operation = std::function<void(RandomScene &scene, const Meanwhile &meanwhile)>;

    static void destroy(const std::vector<std::uint32_t> &ids)
    {
        for (const std::uint32_t id : ids) {
            const osg::NodePtr node = kxNodeUtils::getNodeFromId(id);
            const osg::NodePtr parent = node ? node->getParent() : osg::NodePtr();
            const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
            if (parent)
                parent->subChild(node);
        }
    }
    /// Two scenes of each seed lose the same nodes; one of them was prepared before, and the preparation undone after.
    /// Where a node went, the places of its siblings may have changed.
    static void expectRestRestored(std::uint32_t first, std::uint32_t count, const Operation &operation)
    {
        for (std::uint32_t seed = first; seed < first + count && !HasFailure(); ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            std::vector<SceneFingerprint> results;
            for (const bool isPrepared : {false, true}) {
                RandomScene scene(seed);
                std::vector<std::uint32_t> doomed;
                std::set<std::string> parents;
                for (std::size_t i = scene.random.below(3) + 1; i > 0; --i) {
                    const osg::NodePtr node =
                        scene.random.of(scene.random.oneIn(4) ? RandomScene::plates() : RandomScene::nodes());
                    doomed.push_back(node.getFieldContainerId());
                    parents.insert(osg::getName(node->getParent()));
                }
                const kxtest::CapturedOutput output;
                if (isPrepared)
                    operation(scene, [&doomed] { destroy(doomed); });
                else
                    destroy(doomed);
                removeMarks(scene);
                for (const osg::NodePtr &node : RandomScene::nodes())
                    ActionModule::removeActions(node);
                results.push_back(scene.fingerprint(parents));
            }
            EXPECT_THAT(results[0].differencesTo(results[1], SceneFingerprint::Identity::Alike), IsEmpty());
        }
    }
};

} // namespace

TEST_F(NodesGoWhileSavingTest, LeavesTheRestOfGroupedGeometry)
{
    expectRestRestored(4000, 40, [](RandomScene &scene, const Meanwhile &meanwhile) {
        kxCreateGroupedNodes group(Geometry);
        group.prepare(scene.someOf(RandomScene::nodes()));
        meanwhile();
        group.unprepare();
    });
}

TEST_F(NodesGoWhileSavingTest, LeavesTheRestOfGroupedSceneplates)
{
    expectRestRestored(4100, 40, [](RandomScene &scene, const Meanwhile &meanwhile) {
        kxCreateGroupedNodes group(Sceneplate);
        group.prepare(scene.someOf(RandomScene::plates()));
        meanwhile();
        group.unprepare();
    });
}

TEST_F(NodesGoWhileSavingTest, LeavesTheRestOfAPreparedNode)
{
    const ActionModule actions;
    expectRestRestored(4200, 40, [](RandomScene &scene, const Meanwhile &meanwhile) {
        kxSaveNode preparation(scene.random.of(RandomScene::nodes()));
        meanwhile();
        preparation.cleanup();
    });
}

TEST_F(NodesGoWhileSavingTest, LeavesTheRestOfAPreparedEnvironment)
{
    expectRestRestored(4300, 100, [](RandomScene &scene, const Meanwhile &meanwhile) {
        kxSaveEnvironment preparation;
        preparation.prepare(scene.random.of(RandomScene::environments()));
        meanwhile();
        preparation.unprepare();
    });
}

TEST_F(NodesGoWhileSavingTest, LeavesTheRestWhenGeometryIsStored)
{
    expectRestRestored(4500, 15, [this](RandomScene &scene, const Meanwhile &meanwhile) {
        kxGeometryAssetItem item;
        item.initFrom(scene.random.of(RandomScene::nodes()), {}, true);
        const BusyModule host(meanwhile);
        kxLocalUrlManager::the()->saveSceneNodeAsset(url("Library"), &item);
    });
}

TEST_F(NodesGoWhileSavingTest, LeavesTheRestWhenAnEnvironmentIsStored)
{
    expectRestRestored(4600, 25, [this](RandomScene &scene, const Meanwhile &meanwhile) {
        kxEnvironmentNodeAssetItem item;
        item.initFrom(scene.random.of(RandomScene::environments()), {}, true);
        const BusyModule host(meanwhile);
        kxLocalUrlManager::the()->saveEnvironmentNodeAsset(url("Library"), &item);
    });
}

TEST_F(NodesGoWhileSavingTest, SurvivesThatTheDocumentIsClosed)
{
    const ActionModule actions;
    inRandomScenes(4400, 5, [](RandomScene &scene) {
        const kxtest::CapturedOutput output;
        kxCreateGroupedNodes geometry(Geometry);
        kxCreateGroupedNodes plates(Sceneplate);
        const kxSaveNode node(scene.random.of(RandomScene::nodes()));
        kxSaveEnvironment environment;
        geometry.prepare(scene.someOf(RandomScene::nodes()));
        plates.prepare(scene.someOf(RandomScene::plates()));
        environment.prepare(scene.random.of(RandomScene::environments()));

        kxScenegraph::closeDocument();
    });
}
