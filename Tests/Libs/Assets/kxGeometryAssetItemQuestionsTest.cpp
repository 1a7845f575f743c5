// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxGeometryAssetItem.h"
#include "Kernel/kxController.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxReferenceService.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "NodeFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Transform.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTranslator>
#include <QWidget>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Knows the references that a test says, refuses to make them ordinary, and notes what it is asked.
class RefusingReferences final : public kxReferenceService
{
public:
    std::vector<kxdReferenceNodePtr> referenceNodes(const kxdNodePtr &node) override
    {
        lookedBelow.push_back(node->getObjectId());
        std::vector<kxdReferenceNodePtr> nodes;
        nodes.reserve(references.size());
        for (const std::uint32_t id : references)
            nodes.push_back(kxdReferenceNodePtr::create(id));
        return nodes;
    }
    bool makeOrdinary(const kxdReferenceNodePtr &node) override
    {
        handedOver.push_back(node->getObjectId());
        if (whenHandedOver)
            whenHandedOver();
        return false;
    }

    std::vector<std::uint32_t> references;
    std::function<void()> whenHandedOver;
    std::vector<std::uint32_t> lookedBelow;
    std::vector<std::uint32_t> handedOver;
};

/// Notes for which nodes it was told to stand.
class WatchfulItem final : public kxGeometryAssetItem
{
public:
    void setNode(const osg::NodePtr &node) override
    {
        told.push_back(node.getFieldContainerId());
        kxGeometryAssetItem::setNode(node);
    }

    std::vector<std::uint32_t> told;
};

class kxGeometryAssetItemQuestionsTest : public NodeFixture
{
protected:
    kxGeometryAssetItemQuestionsTest()
    {
        kxKernelServiceFactory::the().setService<kxReferenceService>(&service);
        kxModalQuestion::setAnswerer([this](const kxModalQuestion::Question &question) {
            questions.push_back(question);
            return questions.size() <= answers.size() ? answers[questions.size() - 1] : QMessageBox::Cancel;
        });
    }
    ~kxGeometryAssetItemQuestionsTest() override
    {
        kxModalQuestion::setAnswerer({});
        kxKernelServiceFactory::the().setService<kxReferenceService>(nullptr);
    }

    static osg::NodePtr root() { return kxScenegraph::getRoot(); }
    static osg::NodePtr addChair()
    {
        const osg::NodePtr chair = addPlaced(root(), "Chair", {1.0, 2.0, 3.0});
        addSquare(chair, "Seat");
        return chair;
    }

    RefusingReferences service;
    std::vector<kxModalQuestion::Question> questions;
    std::vector<QMessageBox::StandardButton> answers;
    WatchfulItem item;
};

} // namespace

TEST_F(kxGeometryAssetItemQuestionsTest, HandsReferencesOverInTheirOrderWhateverComesOfIt)
{
    const osg::NodePtr chair = addChair();
    service.references = {30, 10, 20};
    answers = {QMessageBox::Ok};
    item.setNode(chair);

    EXPECT_TRUE(item.makeNodeValidForSave());

    EXPECT_THAT(service.lookedBelow, ElementsAre(chair.getFieldContainerId()));
    EXPECT_THAT(service.handedOver, ElementsAre(30, 10, 20));
    EXPECT_THAT(questions, SizeIs(1)) << "one for all of them";
}

TEST_F(kxGeometryAssetItemQuestionsTest, AsksNothingWithoutReferences)
{
    item.setNode(addChair());

    EXPECT_TRUE(item.makeNodeValidForSave());

    EXPECT_THAT(service.lookedBelow, SizeIs(1));
    EXPECT_THAT(questions, IsEmpty());
}

TEST_F(kxGeometryAssetItemQuestionsTest, AsksNothingWithoutANode)
{
    service.references = {1};

    EXPECT_FALSE(item.makeNodeValidForSave());

    EXPECT_THAT(service.lookedBelow, IsEmpty());
    EXPECT_THAT(questions, IsEmpty());
}

TEST_F(kxGeometryAssetItemQuestionsTest, StopsWhereReferencesAreToStay)
{
    const osg::NodePtr group = addGroup(root(), "Group");
    service.references = {1};
    answers = {QMessageBox::Cancel, QMessageBox::Yes};
    item.setNode(group);

    EXPECT_FALSE(item.makeNodeValidForSave());

    EXPECT_THAT(questions, SizeIs(1)) << "the root is not asked for";
    EXPECT_THAT(service.handedOver, IsEmpty());
    EXPECT_EQ(group->getParent(), root());
}

TEST_F(kxGeometryAssetItemQuestionsTest, LooksForARootAfterReferencesAreGone)
{
    const osg::NodePtr leaf = addPlaced(root(), "Leaf", {0.0, 0.0, 0.0});
    service.references = {1};
    service.whenHandedOver = [&leaf] { addSquare(leaf, "Loaded"); };
    answers = {QMessageBox::Ok};
    item.setNode(leaf);

    EXPECT_TRUE(item.makeNodeValidForSave());

    EXPECT_THAT(questions, SizeIs(1)) << "the leaf has become a root meanwhile";
    EXPECT_EQ(item.getNode(), leaf);
}

TEST_F(kxGeometryAssetItemQuestionsTest, AsksForARootOnlyAboveOtherPlacements)
{
    const auto core = osg::Transform::create();
    const osg::NodePtr plain = addNode(root(), core, "Plain");
    addSquare(plain, "Seat");
    const osg::FCRef<osg::Node> coreless(osg::Node::create());
    const osg::NodePtr child = osg::makeNodeFor(osg::Group::create());
    {
        const osg::CPEditor edit(coreless.get(), osg::Node::ChildrenFieldMask);
        coreless->addChild(child);
    }

    EXPECT_FALSE(kxGeometryAssetItem::isValidAssetRoot(plain)) << "a matrix is no placement by parts";
    EXPECT_FALSE(kxGeometryAssetItem::isValidAssetRoot(coreless));
    item.setNode(plain);
    EXPECT_FALSE(item.makeNodeValidForSave());
    EXPECT_THAT(questions, SizeIs(1));
}

TEST_F(kxGeometryAssetItemQuestionsTest, AsksForARootAboveALeafThoughThatHasAPlacement)
{
    item.setNode(addPlaced(root(), "Leaf", {1.0, 2.0, 3.0}));

    EXPECT_FALSE(item.makeNodeValidForSave());

    EXPECT_THAT(questions, SizeIs(1));
}

TEST_F(kxGeometryAssetItemQuestionsTest, MakesNoRootWhenTheBoxIsJustClosed)
{
    const osg::NodePtr group = addGroup(root(), "Group");
    answers = {QMessageBox::NoButton};
    item.setNode(group);

    EXPECT_FALSE(item.makeNodeValidForSave());

    EXPECT_EQ(group->getParent(), root());
    EXPECT_EQ(item.getNode(), group);
}

TEST_F(kxGeometryAssetItemQuestionsTest, MakesARootAtThePlaceOfTheNode)
{
    const osg::NodePtr parent = addGroup(root(), "P");
    addGroup(parent, "A");
    const osg::NodePtr group = addGroup(parent, "B");
    addGroup(parent, "C");
    answers = {QMessageBox::Yes};
    item.initFrom(group, {}, true);
    item.told.clear();
    QSignalSpy names(&kxScenegraph::notifier(), &kxScenegraphNotifier::nameChanged);

    EXPECT_TRUE(item.makeNodeValidForSave());

    EXPECT_EQ(describe(parent), "P(A B(B) C)") << "the root is named like the item";
    EXPECT_EQ(item.getNode(), parent->getChild(1));
    EXPECT_THAT(item.told, IsEmpty()) << "it is the same asset";
    ASSERT_EQ(names.count(), 2) << "as an asset root, and by the item's name";
    EXPECT_EQ(names[1][0].toUInt(), item.getNode().getFieldContainerId());
}

TEST_F(kxGeometryAssetItemQuestionsTest, HasTheViewsRefreshOnceAndLaterWhenItMadeARoot)
{
    item.setNode(addGroup(root(), "Group"));
    answers = {QMessageBox::Yes};
    QCoreApplication::processEvents();
    QSignalSpy updates(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested);

    EXPECT_TRUE(item.makeNodeValidForSave());

    EXPECT_EQ(updates.count(), 0) << "not at once";
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(updates.count(), 1);
}

TEST_F(kxGeometryAssetItemQuestionsTest, HasNoViewRefreshWhenItMadeNone)
{
    QCoreApplication::processEvents();
    QSignalSpy updates(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested);

    item.setNode(addGroup(root(), "Group"));
    EXPECT_FALSE(item.makeNodeValidForSave()) << "declined";
    item.setNode(addChair());
    EXPECT_TRUE(item.makeNodeValidForSave()) << "there is one";

    QCoreApplication::processEvents();
    EXPECT_EQ(updates.count(), 0);
}

TEST_F(kxGeometryAssetItemQuestionsTest, WarnsAboveTheMainWindow)
{
    QWidget window;
    kxController::setMainWindow(&window);
    service.references = {1};
    answers = {QMessageBox::Ok, QMessageBox::Cancel};
    item.setNode(addGroup(root(), "Group"));

    EXPECT_FALSE(item.makeNodeValidForSave());
    kxController::setMainWindow(nullptr);

    ASSERT_THAT(questions, SizeIs(2));
    for (const kxModalQuestion::Question &question : questions) {
        EXPECT_EQ(question.parent, &window) << question.title.toStdString();
        EXPECT_EQ(question.icon, QMessageBox::Warning) << question.title.toStdString();
    }
}

TEST_F(kxGeometryAssetItemQuestionsTest, TranslatesAllTextsInTheContextOfItsClass)
{
    struct ContextTranslator : QTranslator
    {
        QString translate(const char *context, const char *, const char *, int) const override { return context; }
        bool isEmpty() const override { return false; }
    } translator;
    service.references = {1};
    answers = {QMessageBox::Ok, QMessageBox::Cancel};
    item.setNode(addGroup(root(), "Group"));
    QCoreApplication::installTranslator(&translator);

    item.makeNodeValidForSave();
    QCoreApplication::removeTranslator(&translator);

    ASSERT_THAT(questions, SizeIs(2));
    EXPECT_EQ(questions[0].title, "kxGeometryAssetItem");
    EXPECT_EQ(questions[0].text, "kxGeometryAssetItem");
    EXPECT_EQ(questions[1].title, "kxGeometryAssetItem");
    EXPECT_EQ(questions[1].text, "Group:\nkxGeometryAssetItem");
}

TEST_F(kxGeometryAssetItemQuestionsTest, AsksBeforeItLooksForAPlace)
{
    item.initFrom(addGroup(root(), "Group"), {}, true);
    answers = {QMessageBox::Yes};

    EXPECT_FALSE(item.save(QUrl("unknown:/place")));

    EXPECT_THAT(questions, SizeIs(1));
    EXPECT_EQ(describe(item.getNode()), "Group(Group)") << "what was answered stays";
}

TEST_F(kxGeometryAssetItemQuestionsTest, ForgetsItsNodeWithoutAWordWhenItIsReset)
{
    item.setNode(addChair());
    item.told.clear();

    item.initFrom(nullptr, {}, true);

    EXPECT_FALSE(item.getNode());
    EXPECT_THAT(item.told, IsEmpty());
}
