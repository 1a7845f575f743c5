// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Language.h"

#include "AssetManager/FieldEditor.h"
#include "AssetManager/FieldLabels.h"
#include "SceneFixture.h"
#include "SceneGraph/FCPtr.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/NodeCore.h"
#include "SceneGraph/UberCamera.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>

namespace {

class LanguageTest : public SceneFixture
{
protected:
    ~LanguageTest() override
    {
        for (QTranslator *translator : translators())
            delete translator;
        QLocale::setDefault(before);
    }

    static QList<QTranslator *> translators() { return QCoreApplication::instance()->findChildren<QTranslator *>(); }

    const QLocale before;
};

TEST_F(LanguageTest, SpeaksGerman)
{
    Language::install(QLocale("de_AT"));

    EXPECT_EQ(QCoreApplication::translate("MainMenus", "&File"), QStringLiteral("&Datei"));
    EXPECT_EQ(QCoreApplication::translate("kxAssetCategory", "Materials"), QStringLiteral("Materialien"));
    EXPECT_EQ(QCoreApplication::translate("MainWindow", "%n asset(s)", nullptr, 1), QStringLiteral("1 Asset"));
    EXPECT_EQ(QCoreApplication::translate("MainWindow", "%n asset(s)", nullptr, 2), QStringLiteral("2 Assets"));
}

TEST_F(LanguageTest, BringsWhatQtSays)
{
    Language::install(QLocale("de"));

    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), QStringLiteral("Abbrechen"));
}

TEST_F(LanguageTest, SpeaksEnglishWhereThereIsNoCatalogue)
{
    Language::install(QLocale("fr"));

    EXPECT_EQ(QCoreApplication::translate("MainMenus", "&File"), QStringLiteral("&File"));
    EXPECT_EQ(QCoreApplication::translate("MainWindow", "%n asset(s)", nullptr, 1), QStringLiteral("1 asset"));
    EXPECT_EQ(QCoreApplication::translate("MainWindow", "%n asset(s)", nullptr, 2), QStringLiteral("2 assets"));
}

TEST_F(LanguageTest, IsChosenOnTheCommandLine)
{
    EXPECT_EQ(Language::wanted({"asset-manager", "--language", "de"}).language(), QLocale::German);
    EXPECT_EQ(Language::wanted({"asset-manager", "Library", "--language=en"}).language(), QLocale::English);
    EXPECT_EQ(Language::wanted({"asset-manager", "Library"}), QLocale());
}

/// What the panel of properties may show: of each kind of container those fields that it has an editor for.
std::set<QString> shownLabels(SceneActions &actions)
{
    std::set<QString> labels;
    for (const osg::FieldContainerType *type : osg::FieldContainerFactory::the().types()) {
        if (type->isAbstract())
            continue;
        const osg::FCRef<osg::FieldContainer> prototype(type->createContainer());
        if (!osg::NodeCorePtr::dcast(prototype.get()) && !osg::MaterialPtr::dcast(prototype.get()) &&
            !osg::UberCameraPtr::dcast(prototype.get()))
            continue;
        for (const osg::FieldInfo &field : type->fields())
            if (std::unique_ptr<FieldEditor>(
                    FieldEditor::make(actions, {prototype.get().getFieldContainerId()}, field.name, nullptr)))
                labels.insert(FieldLabels::label(field.name));
    }
    return labels;
}

TEST_F(LanguageTest, KnowsTheLabelOfEachFieldThatCanBeEdited)
{
    const std::set<QString> labels = shownLabels(actions);
    Language::install(QLocale("de"));
    const QList<QTranslator *> all = translators();

    EXPECT_GT(labels.size(), 40U);
    for (const QString &label : labels)
        EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&label](const QTranslator *one) {
            return !one->translate("FieldLabels", label.toUtf8()).isNull();
        })) << label.toStdString();
}

} // namespace
