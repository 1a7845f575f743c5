// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ImportDialog.h"

#include "AssetSession/kxMaterialDescription.h"
#include "Import/kxForeignFormats.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDirIterator>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

ImportDialog::ImportDialog(const QStringList &files, const QString &folder, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("importDialog"));
    setWindowTitle(tr("Import"));
    const auto isModel = [](const QString &file) { return kxForeignFormats::isSceneFile(file.toStdString()); };
    const auto isPicture = [](const QString &file) { return kxForeignFormats::isImageFile(file.toStdString()); };
    auto *what =
        new QLabel(tr("Import %n file(s) into \"%1\".", nullptr, files.size()).arg(QFileInfo(folder).fileName()), this);
    _models = new QComboBox(this);
    _models->setObjectName(QStringLiteral("models"));
    _models->addItem(tr("A geometry asset of each model"), static_cast<int>(ImportOptions::Models::Geometry));
    _models->addItem(tr("A geometry asset of each part"), static_cast<int>(ImportOptions::Models::Parts));
    _models->addItem(tr("Their materials only"), static_cast<int>(ImportOptions::Models::Materials));
    _pictures = new QComboBox(this);
    _pictures->setObjectName(QStringLiteral("pictures"));
    _pictures->addItem(tr("Environments"), static_cast<int>(ImportOptions::Pictures::Environment));
    _pictures->addItem(tr("Front plates"), static_cast<int>(ImportOptions::Pictures::Frontplate));
    _pictures->addItem(tr("Back plates"), static_cast<int>(ImportOptions::Pictures::Backplate));
    _models->setEnabled(std::any_of(files.begin(), files.end(), isModel));
    _pictures->setEnabled(std::any_of(files.begin(), files.end(), isPicture));

    auto *form = new QFormLayout;
    form->addRow(tr("&Models become"), _models);
    form->addRow(tr("&Pictures become"), _pictures);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("Import"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(what);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

ImportOptions ImportDialog::options() const
{
    return {static_cast<ImportOptions::Models>(_models->currentData().toInt()),
            static_cast<ImportOptions::Pictures>(_pictures->currentData().toInt())};
}

QStringList ImportDialog::importable(const QStringList &files, QStringList &others)
{
    const auto isImportable = [](const QString &file) {
        return kxForeignFormats::isSceneFile(file.toStdString()) || kxForeignFormats::isImageFile(file.toStdString()) ||
               kxMaterialDescription::isDescription(file);
    };
    QStringList found;
    for (const QString &file : files) {
        if (!QFileInfo(file).isDir()) {
            (isImportable(file) ? found : others).append(file);
            continue;
        }
        // In folders only models: the pictures there are mostly their textures.
        QStringList below;
        for (QDirIterator entry(file, QDir::Files, QDirIterator::Subdirectories); entry.hasNext();)
            if (const QString path = entry.next(); kxForeignFormats::isSceneFile(path.toStdString()))
                below.append(path);
        below.sort();
        found += below;
    }
    return found;
}
