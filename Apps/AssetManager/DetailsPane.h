// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>
#include <QWidget>

#include <string>
#include <vector>

class AssetModel;
class AssetStates;
class ElidedLine;
class PreviewCache;
class QFormLayout;
class QLabel;
class QLineEdit;
class QToolButton;

/// The preview and the metadata of the selected assets, where names and tags are edited; several together.
class DetailsPane final : public QWidget
{
    Q_OBJECT

public:
    /// All have to live longer.
    DetailsPane(const AssetModel &model, const AssetStates &states, const PreviewCache &previews,
                QWidget *parent = nullptr);
    ~DetailsPane() override;

    void show(const std::vector<std::string> &uuids);
    void refresh();

Q_SIGNALS:
    void renameRequested(const QString &uuid, const QString &name);
    void tagsEdited(const QStringList &uuids, const QStringList &added, const QStringList &removed);
    void favouriteChanged(const QStringList &uuids, bool isFavourite);

private:
    void makeForm();
    void connectEditors();
    void showTags();
    void showPreview();
    void addTag();
    QStringList ids() const;
    QStringList previewed() const;
    void setRowsVisible(const std::vector<QWidget *> &values, bool areVisible);
    bool eventFilter(QObject *watched, QEvent *event) override;

    const AssetModel &_model;
    const AssetStates &_states;
    const PreviewCache &_previews;
    std::vector<std::string> _uuids;
    QLabel *_preview;
    QLineEdit *_name;
    QToolButton *_favourite;
    QLabel *_type;
    QLabel *_modified;
    QLabel *_location;
    ElidedLine *_uuid;
    QLabel *_state;
    QWidget *_tags;
    QLineEdit *_newTag;
    QWidget *_form;
    QLabel *_hint;
};
