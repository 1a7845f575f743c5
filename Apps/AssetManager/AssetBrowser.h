// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/AssetFilter.h"

#include <QTimer>
#include <QWidget>

#include <string>
#include <vector>

class AssetGrid;
class AssetModel;
class AssetTable;
class PreviewCache;
class QAbstractItemView;
class QComboBox;
class QItemSelectionModel;
class QLabel;
class QLineEdit;
class QSlider;
class QStackedWidget;
class QTabBar;
class QToolButton;
class TagBar;

/// The assets of the chosen folder, as tiles or lines, with what narrows them down. Main thread only.
class AssetBrowser final : public QWidget
{
    Q_OBJECT

public:
    enum class Look { Tiles, Lines };

    /// Model and previews have to live longer.
    AssetBrowser(AssetModel &model, PreviewCache &previews, QWidget *parent = nullptr);
    ~AssetBrowser() override;

    void setFolder(const QString &path);
    void setCategory(kxAssetCategoryType category);
    void setSpecial(AssetFilter::Special special);
    void setText(const QString &text);
    void setLook(Look look);
    Look look() const;
    void setTileSize(int size);
    int tileSize() const;
    /// Of the list.
    void setColumnWidths(const QList<int> &widths);
    QList<int> columnWidths() const;

    /// What is said where there is nothing to show; an empty text lets the filter decide.
    void setEmptyText(const QString &text);

    /// UUIDs, in the order of the rows.
    std::vector<std::string> selected() const;
    /// Those that the filter hides are left out.
    void select(const std::vector<std::string> &uuids);
    /// Lets a person type another name for the current asset.
    void editName();

    QAbstractItemView &view() const;
    void focusSearch();

    QString hint() const;

Q_SIGNALS:
    void selectionChanged();
    /// The directories of the assets that are selected, and of those that are to be seen or nearly.
    void seenChanged(const QStringList &directories);
    /// An asset was double-clicked, or Enter was pressed on it.
    void activated(const QString &uuid);
    void menuRequested(const QPoint &globalPosition);

private:
    void makeControls();
    void makeViews();
    void attachModel();
    void applyFilter();
    void applyText();
    void updateWanted();
    void announceSeen(const std::vector<int> &rows);
    void updateTags();
    void updateEmptyText();
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

    AssetModel &_model;
    PreviewCache &_previews;
    AssetFilter _filter;
    QTabBar *_categories;
    QComboBox *_category; ///< in its place in a narrow window
    QLineEdit *_search;
    QToolButton *_favourites;
    QToolButton *_recent;
    QSlider *_size;
    QToolButton *_tiles;
    QToolButton *_lines;
    TagBar *_tags;
    QStackedWidget *_views;
    AssetGrid *_grid;
    AssetTable *_table;
    QLabel *_empty;
    QItemSelectionModel *_selection;
    QString _emptyText;
    QTimer _wantedTimer;
    QTimer _tagTimer;
};
