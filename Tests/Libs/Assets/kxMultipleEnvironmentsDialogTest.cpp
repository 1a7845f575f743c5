// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxMultipleEnvironmentsDialog.h"

#include "Assets/Internal/MultipleEnvironmentsForm.h"
#include "MaterialFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "Support/CapturedOutput.h"

#include <QApplication>
#include <QChildEvent>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QTranslator>

namespace {

/// Answers every text with its context.
class ContextTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *, const char *, int) const override { return context; }
    bool isEmpty() const override { return false; }
};

/// Has slots that are named after what the form holds.
class DialogWithSlots : public QDialog
{
    Q_OBJECT

public:
    QStringList answers;
    QString row;

private Q_SLOTS:
    void on__buttonBox_accepted() { answers.append(result() == Accepted ? "accepted by then" : "too early"); }
    void on__envList_currentTextChanged(const QString &text) { row = text; }
};

/// Gives the list of the form a height that depends on its width, and stretches, once it is made and before it is set up.
class DialogWithAPreparedList : public QDialog
{
private:
    void childEvent(QChildEvent *event) override
    {
        auto *child = qobject_cast<QWidget *>(event->child());
        if (!event->added() || !child)
            return;
        connect(child, &QObject::objectNameChanged, this, [child](const QString &name) {
            if (name != QLatin1String("_envList"))
                return;
            QSizePolicy policy = child->sizePolicy();
            policy.setHeightForWidth(true);
            policy.setHorizontalStretch(3);
            policy.setVerticalStretch(4);
            child->setSizePolicy(policy);
        });
    }
};

class kxMultipleEnvironmentsDialogTest : public MaterialFixture
{
protected:
    static osg::UEnvironmentMaterialPtr env(const Owned &material)
    {
        return osg::UEnvironmentMaterialPtr::dcast(material.get());
    }
    static QListWidget *listOf(const QDialog &dialog) { return dialog.findChild<QListWidget *>("_envList"); }
    /// Makes the image, which may be null, the material's preview.
    static void setPreview(const Owned &material, const osg::ImagePtr &image)
    {
        const auto attachment = osg::ImageAttachment::create();
        {
            const osg::CPEditor edit(attachment, osg::ImageAttachment::ImageFieldMask);
            attachment->setImage(image);
        }
        const osg::CPEditor edit(material.get(), osg::AttachmentContainer::AttachmentsFieldMask);
        material->addAttachment(attachment);
    }
};

} // namespace

TEST_F(kxMultipleEnvironmentsDialogTest, IsBuiltAsItsFormSays)
{
    const kxMultipleEnvironmentsGUII dialog;

    EXPECT_EQ(dialog.objectName(), "kxMultipleEnvironmentsDialog");
    EXPECT_EQ(dialog.windowTitle(), "Asset Manager");
    EXPECT_EQ(dialog.size(), QSize(400, 277));
    EXPECT_TRUE(dialog.isSizeGripEnabled());
    EXPECT_TRUE(dialog.isModal());
    const auto *layout = dialog.findChild<QGridLayout *>("gridLayout_3");
    ASSERT_TRUE(layout);
    const char *names[] = {"label", "label2", "_envList", "_buttonBox"};
    for (int row = 0; row < 4; ++row)
        EXPECT_EQ(layout->itemAtPosition(row, 0)->widget()->objectName(), names[row]);
    const auto *label = dialog.findChild<QLabel *>("label");
    EXPECT_EQ(label->text(), "The loaded Environment Asset contains multiple environment materials.");
    EXPECT_FALSE(label->wordWrap());
    const auto *label2 = dialog.findChild<QLabel *>("label2");
    EXPECT_EQ(label2->text(), "Please select the environment material that should be added to the Default Environment "
                              "Switch in the scene:");
    EXPECT_TRUE(label2->wordWrap());
    const QListWidget *list = listOf(dialog);
    EXPECT_EQ(list->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(list->sizePolicy().verticalPolicy(), QSizePolicy::MinimumExpanding);
    EXPECT_EQ(list->sizePolicy().horizontalStretch(), 0);
    EXPECT_EQ(list->sizePolicy().verticalStretch(), 0);
    EXPECT_EQ(list->editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(list->iconSize(), QSize(128, 64));
    EXPECT_EQ(list->verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    EXPECT_TRUE(list->uniformItemSizes());
    EXPECT_TRUE(list->isSortingEnabled());
    EXPECT_EQ(list->spacing(), 4);
    const auto *buttons = dialog.findChild<QDialogButtonBox *>("_buttonBox");
    EXPECT_EQ(buttons->orientation(), Qt::Horizontal);
    EXPECT_EQ(buttons->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    EXPECT_TRUE(buttons->centerButtons());
}

TEST_F(kxMultipleEnvironmentsDialogTest, ListsByNameAndSelectsTheFirst)
{
    const Owned zebra = makeSky("Zebra");
    const Owned forest = makeSky("Förde");
    kxMultipleEnvironmentsGUII dialog;
    kxtest::CapturedOutput output;

    dialog.fill({env(zebra), nullptr, env(forest)});

    EXPECT_EQ(output.text(), "adding Zebra\nadding Förde\n");
    ASSERT_EQ(listOf(dialog)->count(), 2);
    EXPECT_EQ(listOf(dialog)->item(0)->text(), QString::fromUtf8("Förde"));
    EXPECT_TRUE(listOf(dialog)->item(0)->isSelected());
    EXPECT_EQ(listOf(dialog)->item(1)->data(Qt::UserRole).toUInt(), zebra.get().getFieldContainerId());
    EXPECT_EQ(static_cast<int>(listOf(dialog)->item(1)->data(256).type()), QMetaType::UInt);
    EXPECT_TRUE(listOf(dialog)->item(1)->icon().isNull());
    EXPECT_EQ(dialog.selectedMaterial(), env(forest));
}

TEST_F(kxMultipleEnvironmentsDialogTest, ShowsThePreviewsOfMaterials)
{
    const Owned sky = makeSky("Sky");
    const auto image = osg::Image::create();
    {
        const osg::CPEditor edit(image, osg::AllFieldMask);
        ASSERT_TRUE(image->set(128, 64, 3, osg::PixelType::UInt8));
        image->editPixels() = std::vector<std::uint8_t>(image->byteCount(), 200);
    }
    setPreview(sky, image);
    kxMultipleEnvironmentsGUII dialog;

    dialog.fill({env(sky)});

    const QIcon icon = listOf(dialog)->item(0)->icon();
    EXPECT_EQ(icon.availableSizes(QIcon::Normal, QIcon::On), QList<QSize>{QSize(128, 64)});
    EXPECT_EQ(icon.availableSizes(QIcon::Selected, QIcon::On), QList<QSize>{QSize(128, 64)});
    EXPECT_TRUE(icon.availableSizes(QIcon::Normal, QIcon::Off).isEmpty());
    EXPECT_TRUE(icon.availableSizes(QIcon::Selected, QIcon::Off).isEmpty());
    EXPECT_EQ(icon.pixmap(QSize(128, 64), QIcon::Normal, QIcon::On).toImage().pixelColor(64, 32),
              QColor(200, 200, 200));
}

TEST_F(kxMultipleEnvironmentsDialogTest, ShowsNoIconWhereThePreviewHoldsNoImage)
{
    const Owned sky = makeSky("Sky");
    setPreview(sky, nullptr);
    kxMultipleEnvironmentsGUII dialog;

    dialog.fill({env(sky)});

    EXPECT_TRUE(listOf(dialog)->item(0)->icon().isNull());
}

TEST_F(kxMultipleEnvironmentsDialogTest, SelectsNothingInAnEmptyList)
{
    kxMultipleEnvironmentsGUII dialog;

    dialog.fill({nullptr});

    EXPECT_EQ(listOf(dialog)->count(), 0);
    EXPECT_FALSE(dialog.selectedMaterial());
}

TEST_F(kxMultipleEnvironmentsDialogTest, FitsItsSizeToItsContents)
{
    const Owned sky = makeSky("Sky");
    kxMultipleEnvironmentsGUII dialog;
    dialog.resize(1200, 1100);

    dialog.fill({env(sky)});

    EXPECT_LT(dialog.width(), 1200);
    EXPECT_LT(dialog.height(), 1100);
}

TEST_F(kxMultipleEnvironmentsDialogTest, GivesOnlyAnEnvironmentMaterial)
{
    const Owned sky = makeSky("Sky");
    const Owned paint = makeSurface("Paint");
    kxMultipleEnvironmentsGUII dialog;
    dialog.fill({env(sky)});

    listOf(dialog)->item(0)->setData(Qt::UserRole, static_cast<unsigned>(paint.get().getFieldContainerId()));

    EXPECT_FALSE(dialog.selectedMaterial());
}

TEST_F(kxMultipleEnvironmentsDialogTest, HasTheParentAndFlagsThatItIsGiven)
{
    QWidget parent;
    const kxMultipleEnvironmentsGUII dialog(&parent, Qt::Dialog | Qt::WindowStaysOnTopHint);

    EXPECT_EQ(dialog.parentWidget(), &parent);
    EXPECT_TRUE(dialog.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
}

TEST_F(kxMultipleEnvironmentsDialogTest, TranslatesInTheContextOfItsForm)
{
    ContextTranslator translator;
    QCoreApplication::installTranslator(&translator);

    const kxMultipleEnvironmentsGUII dialog;
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(dialog.windowTitle(), "kxMultipleEnvironmentsDialog");
    EXPECT_EQ(dialog.findChild<QLabel *>("label")->text(), "kxMultipleEnvironmentsDialog");
    EXPECT_EQ(dialog.findChild<QLabel *>("label2")->text(), "kxMultipleEnvironmentsDialog");
}

TEST_F(kxMultipleEnvironmentsDialogTest, KeepsTheNameThatADialogHas)
{
    QDialog dialog;
    dialog.setObjectName("mine");
    Ui::kxMultipleEnvironmentsDialog form;

    form.setupUi(&dialog);

    EXPECT_EQ(dialog.objectName(), "mine");
}

TEST_F(kxMultipleEnvironmentsDialogTest, ConnectsSlotsByTheirNamesAfterItsOwn)
{
    DialogWithSlots dialog;
    Ui::kxMultipleEnvironmentsDialog form;
    form.setupUi(&dialog);

    form._envList->addItem("Sky");
    form._envList->setCurrentRow(0);
    emit form._buttonBox->accepted();

    EXPECT_EQ(dialog.row, "Sky");
    EXPECT_EQ(dialog.answers, QStringList("accepted by then"));
}

TEST_F(kxMultipleEnvironmentsDialogTest, KeepsWhetherTheHeightOfTheListDependsOnItsWidth)
{
    const kxMultipleEnvironmentsGUII usual;
    EXPECT_FALSE(listOf(usual)->sizePolicy().hasHeightForWidth());

    DialogWithAPreparedList dialog;
    Ui::kxMultipleEnvironmentsDialog form;
    form.setupUi(&dialog);

    EXPECT_TRUE(form._envList->sizePolicy().hasHeightForWidth());
    EXPECT_EQ(form._envList->sizePolicy().verticalPolicy(), QSizePolicy::MinimumExpanding);
}

TEST_F(kxMultipleEnvironmentsDialogTest, LetsTheListStretchNoMoreThanTheRest)
{
    DialogWithAPreparedList dialog;
    Ui::kxMultipleEnvironmentsDialog form;
    form.setupUi(&dialog);

    EXPECT_EQ(form._envList->sizePolicy().horizontalStretch(), 0);
    EXPECT_EQ(form._envList->sizePolicy().verticalStretch(), 0);
}

TEST_F(kxMultipleEnvironmentsDialogTest, HasNoMaterialWithoutASelection)
{
    Owned sky = makeSky("Sky");
    kxMultipleEnvironmentsGUII dialog;
    EXPECT_FALSE(dialog.selectedMaterial());

    dialog.fill({env(sky)});
    listOf(dialog)->clearSelection();
    EXPECT_FALSE(dialog.selectedMaterial());
    listOf(dialog)->item(0)->setSelected(true);
    EXPECT_TRUE(dialog.selectedMaterial());
    sky.reset();
    EXPECT_FALSE(dialog.selectedMaterial()) << "destroyed meanwhile";
}

TEST_F(kxMultipleEnvironmentsDialogTest, ShowsTheArrowWhileItExists)
{
    QApplication::setOverrideCursor(Qt::BusyCursor);
    {
        const kxMultipleEnvironmentsGUII dialog;
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
    }
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::BusyCursor);
    QApplication::restoreOverrideCursor();
}

TEST_F(kxMultipleEnvironmentsDialogTest, AcceptsAndRejectsByItsButtons)
{
    kxMultipleEnvironmentsGUII dialog;
    auto *buttons = dialog.findChild<QDialogButtonBox *>("_buttonBox");

    emit buttons->accepted();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    emit buttons->rejected();
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

#include "kxMultipleEnvironmentsDialogTest.moc"
