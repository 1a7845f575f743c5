// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxEnvironmentMaterialAssetItem.h"

#include "Assets/kxAssetItemDocument.h"
#include "MaterialFixture.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"

#include <QTranslator>

namespace {

class kxEnvironmentMaterialAssetItemTest : public MaterialFixture
{};

/// Answers every text with its context.
class ContextTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *, const char *, int) const override { return context; }
    bool isEmpty() const override { return false; }
};

} // namespace

TEST_F(kxEnvironmentMaterialAssetItemTest, BeginsAsAnEnvironment)
{
    kxEnvironmentMaterialAssetItem item;

    EXPECT_EQ(item.category(), Environment);
    EXPECT_TRUE(item.hasCategory(Environment));
    EXPECT_EQ(item.name(), "unnamed");
    EXPECT_EQ(item.mimeType(), "application/sarn-environment-asset");
}

TEST_F(kxEnvironmentMaterialAssetItemTest, StaysAnEnvironmentWhenReset)
{
    kxEnvironmentMaterialAssetItem item;
    item.initFrom(makeSky("Sky"), "u", true);

    item.initFrom(nullptr, "u", true);

    EXPECT_EQ(item.category(), Environment);
    EXPECT_EQ(item.uuid(), "");
    EXPECT_FALSE(item.getMaterial());
}

TEST_F(kxEnvironmentMaterialAssetItemTest, StandsForItsMaterialLikeAMaterialItem)
{
    const Owned sky = makeSky("Sky");
    kxEnvironmentMaterialAssetItem item;

    item.initFrom(sky, "u", true);

    EXPECT_EQ(item.getMaterial(), sky.get());
    EXPECT_EQ(sky->getRefCount(), 2);
    EXPECT_EQ(item.name(), "Sky");
    EXPECT_EQ(item.category(), Environment);
    EXPECT_EQ(item.materialTypeName(), "USkyEnvironmentMaterial");
}

TEST_F(kxEnvironmentMaterialAssetItemTest, ReadsItsDescription)
{
    kxAssetItemDocument document;
    document.setAssetType(Environment);
    document.setAssetUUID("u");
    document.setAssetName("Sky");
    document.setMaterialType(osg::USkyEnvironmentMaterial::getClassType());
    kxEnvironmentMaterialAssetItem item;

    EXPECT_TRUE(item.readMetaData(document));

    EXPECT_EQ(item.uuid(), "u");
    EXPECT_EQ(item.materialType(), &osg::USkyEnvironmentMaterial::getClassType());
}

TEST_F(kxEnvironmentMaterialAssetItemTest, NamesItsKindAndLeavesTheRestToTheBase)
{
    const Owned sky = makeSky("Sky");
    setTags(sky, {"evening"});
    kxEnvironmentMaterialAssetItem item;
    item.initFrom(sky, "u", true);

    for (const int role : {0, 3}) {
        EXPECT_EQ(item.data(1, role), QVariant("Environment Material"));
        EXPECT_EQ(item.data(0, role), QVariant("Sky"));
        EXPECT_FALSE(item.data(4, role).isValid()) << "no column for tags";
    }
    EXPECT_EQ(item.data(0, 2), QVariant("Sky")) << "the base has values for editing";
    EXPECT_FALSE(item.data(1, 2).isValid());
    EXPECT_FALSE(item.data(1, 1).isValid());
    EXPECT_EQ(item.sortData(1), QVariant("Environment Material"));
}

TEST_F(kxEnvironmentMaterialAssetItemTest, TranslatesInItsOwnContext)
{
    kxEnvironmentMaterialAssetItem item;
    ContextTranslator translator;
    QCoreApplication::installTranslator(&translator);

    const QVariant kind = item.data(1, 0);
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(kind, QVariant("kxEnvironmentMaterialAssetItem"));
}
