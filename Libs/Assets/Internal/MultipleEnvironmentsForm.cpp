// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/MultipleEnvironmentsForm.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QMetaObject>

namespace {

void setUpList(QListWidget &list)
{
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::MinimumExpanding);
    policy.setHeightForWidth(list.sizePolicy().hasHeightForWidth());
    list.setSizePolicy(policy);
    list.setEditTriggers(QAbstractItemView::NoEditTriggers);
    list.setIconSize(QSize(128, 64));
    list.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list.setUniformItemSizes(true);
    list.setSortingEnabled(true);
}

} // namespace

void Ui::kxMultipleEnvironmentsDialog::setupUi(QDialog *dialog)
{
    if (dialog->objectName().isEmpty())
        dialog->setObjectName(QStringLiteral("kxMultipleEnvironmentsDialog"));
    dialog->resize(400, 277);
    dialog->setSizeGripEnabled(true);
    dialog->setModal(true);
    gridLayout_3 = new QGridLayout(dialog);
    gridLayout_3->setObjectName(QStringLiteral("gridLayout_3"));

    label = new QLabel(dialog);
    label->setObjectName(QStringLiteral("label"));
    label->setWordWrap(false);
    gridLayout_3->addWidget(label, 0, 0);
    label2 = new QLabel(dialog);
    label2->setObjectName(QStringLiteral("label2"));
    label2->setWordWrap(true);
    gridLayout_3->addWidget(label2, 1, 0);
    _envList = new QListWidget(dialog);
    _envList->setObjectName(QStringLiteral("_envList"));
    setUpList(*_envList);
    gridLayout_3->addWidget(_envList, 2, 0);
    _buttonBox = new QDialogButtonBox(dialog);
    _buttonBox->setObjectName(QStringLiteral("_buttonBox"));
    _buttonBox->setOrientation(Qt::Horizontal);
    _buttonBox->setStandardButtons(QDialogButtonBox::Cancel | QDialogButtonBox::Ok);
    _buttonBox->setCenterButtons(true);
    gridLayout_3->addWidget(_buttonBox, 3, 0);

    retranslateUi(dialog);
    QObject::connect(_buttonBox, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(_buttonBox, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    QMetaObject::connectSlotsByName(dialog);
}

void Ui::kxMultipleEnvironmentsDialog::retranslateUi(QDialog *dialog)
{
    dialog->setWindowTitle(QCoreApplication::translate("kxMultipleEnvironmentsDialog", "Asset Manager"));
    label->setText(QCoreApplication::translate(
        "kxMultipleEnvironmentsDialog", "The loaded Environment Asset contains multiple environment materials."));
    label2->setText(QCoreApplication::translate("kxMultipleEnvironmentsDialog",
                                                "Please select the environment material that should be added to "
                                                "the Default Environment Switch in the scene:"));
}
