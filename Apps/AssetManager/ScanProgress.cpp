// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScanProgress.h"

#include "AssetManager/LibraryScan.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QToolButton>

ScanProgress::ScanProgress(LibraryScan &scan, QWidget *parent) : QWidget(parent), _text(new QLabel(this))
{
    setObjectName(QStringLiteral("scanProgress"));
    auto *bar = new QProgressBar(this);
    bar->setRange(0, 0); // nobody knows how many assets there are before they are read
    bar->setMaximumSize(90, 12);
    bar->setTextVisible(false);
    bar->setAccessibleName(tr("Reading libraries"));
    auto *cancel = new QToolButton(this);
    cancel->setObjectName(QStringLiteral("cancelScan"));
    cancel->setText(tr("Stop"));
    cancel->setToolTip(tr("Stop reading; what was found stays"));
    cancel->setAutoRaise(true);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_text);
    layout->addWidget(bar);
    layout->addWidget(cancel);
    hide();

    connect(cancel, &QToolButton::clicked, &scan, &LibraryScan::cancel);
    connect(&scan, &LibraryScan::started, this, [this] {
        _text->setText(tr("Reading..."));
        show();
    });
    connect(&scan, &LibraryScan::progressed, this, [this](int count, const QString &folder) {
        _text->setText(tr("Reading \"%1\": %n asset(s)", nullptr, count).arg(QFileInfo(folder).fileName()));
    });
    connect(&scan, &LibraryScan::finished, this, &QWidget::hide);
}
