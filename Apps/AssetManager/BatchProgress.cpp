// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/BatchProgress.h"

#include <QProgressBar>
#include <QProgressDialog>

BatchProgress::BatchProgress(const QString &text, int total, QWidget *window, const Look &look)
{
    if (total < 2 && look.patience > 0)
        return; // there is nothing to stop
    _dialog = std::make_unique<QProgressDialog>(text, tr("Cancel"), 0, total, window);
    _dialog->findChild<QProgressBar *>()->setAccessibleName(text);
    _dialog->setObjectName(QLatin1String(look.name));
    _dialog->setWindowModality(Qt::WindowModal);
    _dialog->setAutoReset(false);
    _dialog->setMinimumDuration(look.patience);
    if (look.patience == 0)
        _dialog->show();
}

BatchProgress::~BatchProgress() = default;

bool BatchProgress::goesOn()
{
    if (!_dialog)
        return true;
    _dialog->setValue(_done++);
    if (_dialog->isVisible())
        QCoreApplication::processEvents();
    return !isCanceled();
}

bool BatchProgress::isCanceled() const
{
    return _dialog && _dialog->wasCanceled();
}
