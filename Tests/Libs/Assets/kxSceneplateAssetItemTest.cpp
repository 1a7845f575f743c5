// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxSceneplateAssetItem.h"

#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxAssetItemFactory.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeService.h"
#include "Kernel/kxSceneplateService.h"
#include "Kernel/kxSceneplateUtils.h"
#include "NodeFixture.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Switch.h"
#include "Support/CapturedOutput.h"

#include <QFileInfo>
#include <QTranslator>

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class PlateService final : public kxSceneplateService
{
public:
    void nodesChanged() override {}
    QImage previewImage(const kxdNodePtr &node) override
    {
        asked.push_back(node ? node->getObjectId() : 0);
        return picture;
    }

    QImage picture;
    std::vector<std::uint32_t> asked;
};

class kxSceneplateAssetItemTest : public NodeFixture
{
protected:
    kxSceneplateAssetItemTest()
    {
        kxKernelServiceFactory::the().setService<kxSceneplateService>(&plates);
        kxKernelServiceFactory::the().setService<kxNodeService>(&nodes);
    }
    ~kxSceneplateAssetItemTest() override
    {
        kxKernelServiceFactory::the().setService<kxSceneplateService>(nullptr);
        kxKernelServiceFactory::the().setService<kxNodeService>(nullptr);
    }

    static osg::NodePtr addPlate(const std::string &name, bool isFront)
    {
        const auto plate = osg::Sceneplate::create();
        {
            const osg::CPEditor edit(plate, osg::Sceneplate::IsFrontFieldMask);
            plate->setIsFront(isFront);
        }
        return addNode(kxSceneplateUtils::getSceneplateRoot(), plate, name);
    }
    std::string save(const osg::NodePtr &node)
    {
        kxSceneplateAssetItem item;
        item.initFrom(node, {}, true);
        EXPECT_TRUE(item.save(url()));
        return item.uuid();
    }
    static QVariant typeOf(kxAssetItem &item) { return item.data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole); }

    PlateService plates;
    kxNodeService nodes;
};

} // namespace

TEST_F(kxSceneplateAssetItemTest, ShowsTheKindOfItsPlate)
{
    kxSceneplateAssetItem item;
    EXPECT_EQ(item.category(), Sceneplate);
    EXPECT_EQ(item.mimeType(), "application/sarn-sceneplate-asset");
    EXPECT_EQ(typeOf(item), "Group") << "a new one";

    item.setNode(addPlate("Logo", true));
    EXPECT_EQ(typeOf(item), "Frontplate");
    item.setNode(addPlate("Sky", false));
    EXPECT_EQ(typeOf(item), "Backplate");
    item.setNode(addNode(kxSceneplateUtils::getSceneplateRoot(), osg::Switch::create(), "Either"));
    EXPECT_EQ(typeOf(item), "Switch");
    EXPECT_EQ(item.data(kxAssetCategory::getTypeColumn(), Qt::ToolTipRole), "Switch");
    item.setNode(nullptr);
    EXPECT_EQ(typeOf(item), "Unknown");
}

TEST_F(kxSceneplateAssetItemTest, ReadsTheKindFromItsMetadata)
{
    for (const auto &[number, text] : std::map<int, QString>{{0, "Unknown"},
                                                             {1, "Frontplate"},
                                                             {2, "Backplate"},
                                                             {3, "Unknown"},
                                                             {4, "Group"},
                                                             {5, "Unknown"},
                                                             {6, "Unknown"},
                                                             {7, "Unknown"},
                                                             {8, "Switch"},
                                                             {9, "Unknown"},
                                                             {16, "Unknown"}}) {
        kxAssetItemDocument document;
        document.setAssetType(Sceneplate);
        document.setAssetUUID("1");
        document.setSceneplateType(static_cast<kxSceneplateTypes::NodeType>(number));
        kxSceneplateAssetItem item;
        EXPECT_TRUE(item.readMetaData(document));
        EXPECT_EQ(typeOf(item), text) << number;
        EXPECT_EQ(item.uuid(), "1");
    }
}

TEST_F(kxSceneplateAssetItemTest, WritesTheKindOfTheNodeAsItIsNow)
{
    kxSceneplateAssetItem item;
    const osg::NodePtr logo = addPlate("Logo", true);
    item.initFrom(logo, {}, true);
    const auto plate = osg::SceneplatePtr::dcast(logo->getCore());
    {
        const osg::CPEditor edit(plate, osg::Sceneplate::IsFrontFieldMask);
        plate->setIsFront(false);
    }
    kxAssetItemDocument document;

    EXPECT_TRUE(item.writeMetaData(document));

    EXPECT_EQ(document.getSceneplateType(), kxSceneplateTypes::Backplate);
    EXPECT_EQ(document.getAssetUUID(), item.uuid()) << "with what every item writes";
    EXPECT_EQ(typeOf(item), "Frontplate") << "what it showed before stays";
}

TEST_F(kxSceneplateAssetItemTest, SavesAndLoads)
{
    plates.picture = QImage(8, 6, QImage::Format_RGB32);
    plates.picture.fill(Qt::red);
    const osg::NodePtr logo = addPlate("Logo", true);
    kxtest::CapturedOutput output;

    const std::string uuid = save(logo);

    EXPECT_THAT(output.text(), HasSubstr("saving preview of Logo\n"));
    EXPECT_EQ(plates.asked, std::vector{logo.getFieldContainerId()});
    EXPECT_EQ(QImage(QString::fromStdString(_folder.file("SCP_Logo/Logo.png"))).size(), QSize(8, 6));
    const osg::FCRef<osg::Node> loaded(kxSceneplateAssetItem::loadNodeFromUUID(uuid));
    ASSERT_TRUE(loaded);
    EXPECT_EQ(describe(loaded), "Logo") << "never wrapped";
    EXPECT_EQ(uuidOfNode(loaded), uuid);
    EXPECT_EQ(osg::findDifference(loaded->getCore(), logo->getCore()), std::nullopt);
    EXPECT_EQ(typeOf(*kxAssetItemFactory::the().findItem(uuid)), "Frontplate");
}

TEST_F(kxSceneplateAssetItemTest, HasNoPreviewWithoutTheServicesOrAPicture)
{
    const osg::NodePtr logo = addPlate("Logo", true);
    kxSceneplateAssetItem item;
    EXPECT_FALSE(item.renderPreview(logo)) << "the picture is null";
    plates.picture = QImage(8, 6, QImage::Format_RGB32);
    plates.picture.fill(Qt::blue);
    const auto image = osg::FCRef<osg::Image>::adopt(item.renderPreview(logo));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->getChannels(), 4U);
    EXPECT_EQ(image->pixel(0, 0), (osg::Vec4f{0.0F, 0.0F, 1.0F, 1.0F}));
    EXPECT_EQ(image.get()->getRefCount(), 1);
    kxKernelServiceFactory::the().setService<kxNodeService>(nullptr);
    EXPECT_FALSE(item.renderPreview(logo));
    kxKernelServiceFactory::the().setService<kxNodeService>(&nodes);
    kxKernelServiceFactory::the().setService<kxSceneplateService>(nullptr);
    EXPECT_FALSE(item.renderPreview(logo));
}

TEST_F(kxSceneplateAssetItemTest, IsFitForSavingWithANode)
{
    kxSceneplateAssetItem item;
    EXPECT_FALSE(item.makeNodeValidForSave());
    EXPECT_FALSE(item.save(url()));
    item.setNode(addPlate("Logo", true));
    EXPECT_TRUE(item.makeNodeValidForSave());
    EXPECT_FALSE(item.save(QUrl("unknown:/place")));
}

TEST_F(kxSceneplateAssetItemTest, SaysWhatItCannotFind)
{
    const std::string material = store(makeSurface("Red"));
    kxtest::CapturedOutput output;
    const kxLogRecorder log;

    EXPECT_FALSE(kxSceneplateAssetItem::loadNodeFromUUID("nobody"));
    EXPECT_FALSE(kxSceneplateAssetItem::loadNodeFromUUID(material));

    EXPECT_EQ(output.text(), "[loadNodeFromUUID] did not find sceneplate item with uuid 'nobody'\n");
    EXPECT_EQ(log.lines(), std::vector<std::string>{"CAST FAILS! loadNodeFromUUID"});
}

TEST_F(kxSceneplateAssetItemTest, WrapsNothingWhenItIsLoaded)
{
    const osg::NodePtr group = addGroup(kxSceneplateUtils::getSceneplateRoot(), "Plates");
    const osg::NodePtr nested = addGroup(group, "Nested");
    setUuid(nested, "nested-uuid");

    const osg::FCRef<osg::Node> loaded(kxSceneplateAssetItem::loadNodeFromUUID(save(group)));

    ASSERT_TRUE(loaded);
    EXPECT_EQ(describe(loaded), "Plates(Nested)");
    EXPECT_EQ(uuidOfNode(loaded->getChild(0)), "nested-uuid");
}

TEST_F(kxSceneplateAssetItemTest, AsksForThePreviewOfNoNodeAsWell)
{
    plates.picture = QImage(8, 6, QImage::Format_RGB32);
    plates.picture.fill(Qt::blue);
    kxSceneplateAssetItem item;

    const auto image = osg::FCRef<osg::Image>::adopt(item.renderPreview(nullptr));

    EXPECT_TRUE(image) << "it is the host's to say what it shows";
    EXPECT_EQ(plates.asked, std::vector<std::uint32_t>{0});
}

TEST_F(kxSceneplateAssetItemTest, AsksNobodyBeforeItSaves)
{
    int questions = 0;
    kxModalQuestion::setAnswerer([&questions](const kxModalQuestion::Question &) {
        ++questions;
        return QMessageBox::Yes;
    });
    const osg::NodePtr group = addGroup(kxSceneplateUtils::getSceneplateRoot(), "Plates");

    save(group);
    kxModalQuestion::setAnswerer({});

    EXPECT_EQ(questions, 0);
    EXPECT_EQ(group->getParent(), kxSceneplateUtils::getSceneplateRoot());
}

TEST_F(kxSceneplateAssetItemTest, ShowsWhatEveryItemShowsInTheOtherColumns)
{
    kxSceneplateAssetItem item;
    item.initFrom(addPlate("Logo", true), {}, true);

    EXPECT_EQ(item.data(kxAssetCategory::getNameColumn(), Qt::DisplayRole), "Logo");
    EXPECT_FALSE(item.data(kxAssetCategory::getTypeColumn(), Qt::EditRole).isValid());
}

TEST_F(kxSceneplateAssetItemTest, TranslatesKindsInTheContextOfItsClass)
{
    struct ContextTranslator : QTranslator
    {
        QString translate(const char *context, const char *text, const char *, int) const override
        {
            return QLatin1String(context) + QLatin1Char('/') + QLatin1String(text);
        }
        bool isEmpty() const override { return false; }
    } translator;
    QCoreApplication::installTranslator(&translator);

    kxSceneplateAssetItem item;
    const QString group = item.sceneplateTypeName();
    item.setNode(nullptr);
    const QString unknown = item.sceneplateTypeName();
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(group, "kxSceneplateAssetItem/Group");
    EXPECT_EQ(unknown, "kxSceneplateAssetItem/Unknown");
}

TEST_F(kxSceneplateAssetItemTest, ForgetsItsNodeByTheVirtualOperationWhenItIsReset)
{
    struct WatchfulItem : kxSceneplateAssetItem
    {
        void setNode(const osg::NodePtr &node) override
        {
            told.push_back(node.getFieldContainerId());
            kxSceneplateAssetItem::setNode(node);
        }
        std::vector<std::uint32_t> told;
    } item;
    const osg::NodePtr logo = addPlate("Logo", true);

    item.initFrom(logo, {}, true);

    EXPECT_EQ(item.told, (std::vector<std::uint32_t>{0, logo.getFieldContainerId()}));
}

TEST_F(kxSceneplateAssetItemTest, HandsOutItsFormerNodeWhenLoadingFails)
{
    kxAssetItemDocument document;
    document.setAssetType(Sceneplate);
    document.setAssetUUID("plate-uuid");
    auto *item = dynamic_cast<kxSceneplateAssetItem *>(kxAssetItemFactory::the().createOrUpdateItem(document));
    ASSERT_TRUE(item);
    const osg::NodePtr logo = addPlate("Logo", true);

    EXPECT_FALSE(kxSceneplateAssetItem::loadNodeFromUUID("plate-uuid"));
    item->setNode(logo);
    EXPECT_EQ(kxSceneplateAssetItem::loadNodeFromUUID("plate-uuid"), logo);
}
