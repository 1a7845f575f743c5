// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/WelcomeDialog.h"

#include <QCheckBox>
#include <QCommandLinkButton>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

WelcomeDialog::WelcomeDialog(const QString &sampleLibrary, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("welcome"));
    setWindowTitle(tr("Welcome"));
    auto *text = new QLabel(tr("Asset Manager keeps materials, environments, geometry and sceneplates in folders that "
                               "you choose, and brings them into scenes."),
                            this);
    text->setWordWrap(true);
    auto *sample = new QCommandLinkButton(
        tr("Open the sample library"), tr("A few dozen designed materials and some models to try things with."), this);
    sample->setObjectName(QStringLiteral("sample"));
    sample->setVisible(!sampleLibrary.isEmpty());
    auto *own = new QCommandLinkButton(tr("Choose a folder of your own"),
                                       tr("One that holds assets already, or an empty one to fill."), this);
    own->setObjectName(QStringLiteral("own"));
    _tour = new QCheckBox(tr("Show me around afterwards"), this);
    _tour->setObjectName(QStringLiteral("tourWanted"));
    _tour->setChecked(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(sample);
    layout->addWidget(own);
    layout->addWidget(_tour);
    layout->addWidget(buttons);
    connect(sample, &QPushButton::clicked, this, [this] { choose(Choice::SampleLibrary); });
    connect(own, &QPushButton::clicked, this, [this] { choose(Choice::OwnLibrary); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void WelcomeDialog::choose(Choice choice)
{
    _choice = choice;
    accept();
}

bool WelcomeDialog::wantsTour() const
{
    return _tour->isChecked();
}
