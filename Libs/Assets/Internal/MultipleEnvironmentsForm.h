// SPDX-License-Identifier: Apache-2.0
#pragma once

class QDialog;
class QDialogButtonBox;
class QGridLayout;
class QLabel;
class QListWidget;

namespace Ui {

/// The widgets of the dialog; they belong to it.
class kxMultipleEnvironmentsDialog
{
public:
    /// Makes the widgets and connects slots by name.
    void setupUi(QDialog *dialog);
    void retranslateUi(QDialog *dialog);

    QGridLayout *gridLayout_3 = nullptr;
    QLabel *label = nullptr;
    QLabel *label2 = nullptr;
    QListWidget *_envList = nullptr;
    QDialogButtonBox *_buttonBox = nullptr;
};

} // namespace Ui
