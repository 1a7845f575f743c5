// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/ImportOptions.h"

#include <QDialog>

class QComboBox;

/// Asks what files that are imported are to become, where they can become several things.
class ImportDialog final : public QDialog
{
    Q_OBJECT

public:
    ImportDialog(const QStringList &files, const QString &folder, QWidget *parent);

    ImportOptions options() const;

    /// The files, those in folders included, that can be imported; in \a others what cannot.
    static QStringList importable(const QStringList &files, QStringList &others);

private:
    QComboBox *_models;
    QComboBox *_pictures;
};
