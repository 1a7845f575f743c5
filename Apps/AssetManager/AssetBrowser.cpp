// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"

#include "AssetManager/AssetGrid.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetTable.h"
#include "AssetManager/LibraryWatcher.h"
#include "AssetManager/PreviewCache.h"
#include "AssetManager/TagBar.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSlider>
#include <QStackedWidget>
#include <QStyle>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int MaxTags = 1000;   // more are found by typing
constexpr int HintMargin = 20;  // pixels
constexpr int LeastSearch = 14; // letters
constexpr int LeastTiles = 190; // pixels: a row of tiles as they are at first
constexpr int TagDelay = 250;   // milliseconds: counting is not for every letter that is typed

QToolButton *makeToggle(const QString &text, const QString &toolTip, const char *name, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setCheckable(true);
    button->setAutoRaise(true);
    return button;
}

} // namespace

AssetBrowser::AssetBrowser(AssetModel &model, PreviewCache &previews, QWidget *parent)
    : QWidget(parent), _model(model), _previews(previews)
{
    setObjectName(QStringLiteral("assetBrowser"));
    makeControls();
    makeViews();

    auto *top = new QHBoxLayout;
    top->addWidget(_categories);
    top->addWidget(_category);
    top->addWidget(_favourites);
    top->addWidget(_recent);
    top->addWidget(_search, 1);
    top->addWidget(_size);
    top->addWidget(_tiles);
    top->addWidget(_lines);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 0);
    layout->setSpacing(4);
    layout->addLayout(top);
    layout->addWidget(_tags);
    layout->addWidget(_views, 1);

    _wantedTimer.setSingleShot(true);
    connect(&_wantedTimer, &QTimer::timeout, this, &AssetBrowser::updateWanted);
    _tagTimer.setSingleShot(true);
    _tagTimer.setInterval(TagDelay);
    connect(&_tagTimer, &QTimer::timeout, this, &AssetBrowser::updateTags);
    connect(&_model, &AssetModel::countChanged, this, [this] {
        _wantedTimer.start();
        _tagTimer.start();
        updateEmptyText();
    });
    connect(&_previews, &PreviewCache::loaded, this, [this] { view().viewport()->update(); });
    updateEmptyText();
}

AssetBrowser::~AssetBrowser() = default;

void AssetBrowser::makeControls()
{
    _categories = new QTabBar(this);
    _categories->setObjectName(QStringLiteral("categories"));
    _categories->setAccessibleName(tr("Kind of assets"));
    _categories->setDocumentMode(true);
    _categories->setExpanding(false);
    _categories->setDrawBase(false);
    _categories->addTab(tr("All"));
    for (const kxAssetCategoryType category : kxAssetCategory::getAllCategories())
        _categories->setTabData(_categories->addTab(kxAssetCategory::getUICategoryName(category)),
                                static_cast<int>(category));
    connect(_categories, &QTabBar::currentChanged, this, [this](int tab) {
        _filter.category = static_cast<kxAssetCategoryType>(_categories->tabData(tab).toInt());
        applyFilter();
    });

    _category = new QComboBox(this);
    _category->setObjectName(QStringLiteral("category"));
    _category->setAccessibleName(_categories->accessibleName());
    for (int tab = 0; tab < _categories->count(); ++tab)
        _category->addItem(_categories->tabText(tab));
    _category->hide();
    connect(_category, qOverload<int>(&QComboBox::activated), _categories, &QTabBar::setCurrentIndex);
    connect(_categories, &QTabBar::currentChanged, _category, &QComboBox::setCurrentIndex);

    _search = new QLineEdit(this);
    _search->setObjectName(QStringLiteral("search"));
    _search->setPlaceholderText(tr("Search"));
    _search->setToolTip(tr("Search names, tags and types"));
    _search->setAccessibleName(tr("Search"));
    _search->setClearButtonEnabled(true);
    _search->setMinimumWidth(LeastSearch * fontMetrics().averageCharWidth());
    _search->installEventFilter(this);
    connect(_search, &QLineEdit::textChanged, this, &AssetBrowser::applyText);

    _favourites = makeToggle(QStringLiteral("★"), tr("Show favourites only"), "favourites", this);
    _recent = makeToggle(QStringLiteral("◷"), tr("Show recently used assets only"), "recent", this);
    connect(_favourites, &QToolButton::toggled, this,
            [this](bool isOn) { setSpecial(isOn ? AssetFilter::Special::Favourites : AssetFilter::Special::None); });
    connect(_recent, &QToolButton::toggled, this,
            [this](bool isOn) { setSpecial(isOn ? AssetFilter::Special::Recent : AssetFilter::Special::None); });

    _size = new QSlider(Qt::Horizontal, this);
    _size->setObjectName(QStringLiteral("tileSize"));
    _size->setAccessibleName(tr("Size of the tiles"));
    _size->setToolTip(tr("Size of the tiles; Control and the mouse wheel change it too"));
    _size->setRange(AssetGrid::MinTile, AssetGrid::MaxTile);
    _size->setFixedWidth(80);
    _tiles = makeToggle(QStringLiteral("▦"), tr("Show tiles"), "showTiles", this);
    _lines = makeToggle(QStringLiteral("☰"), tr("Show a list with details"), "showLines", this);
    _tiles->setAutoExclusive(true);
    _lines->setAutoExclusive(true);
    connect(_tiles, &QToolButton::toggled, this, [this](bool isOn) { setLook(isOn ? Look::Tiles : Look::Lines); });

    _tags = new TagBar(this);
    connect(_tags, &TagBar::chosenChanged, this, [this](const QStringList &tags) {
        _filter.tags = tags;
        applyFilter();
    });
}

void AssetBrowser::makeViews()
{
    _views = new QStackedWidget(this);
    _views->setMinimumHeight(LeastTiles);
    _grid = new AssetGrid(_previews, _views);
    _table = new AssetTable(_previews, _views);
    _views->addWidget(_grid);
    _views->addWidget(_table);
    _selection = new QItemSelectionModel(&_model, this);
    connect(_selection, &QItemSelectionModel::selectionChanged, this, &AssetBrowser::selectionChanged);
    connect(_selection, &QItemSelectionModel::selectionChanged, this, [this] { _wantedTimer.start(); });
    // A view draws its tiles only when it is told that what shall be seen is another part.
    for (QAbstractItemView *shown :
         {static_cast<QAbstractItemView *>(_grid), static_cast<QAbstractItemView *>(_table)}) {
        connect(shown->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { _wantedTimer.start(); });
        connect(shown, &QAbstractItemView::activated, this,
                [this](const QModelIndex &index) { emit activated(index.data(AssetModel::UuidRole).toString()); });
        shown->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(shown, &QWidget::customContextMenuRequested, this,
                [this](const QPoint &position) { emit menuRequested(view().viewport()->mapToGlobal(position)); });
        shown->viewport()->installEventFilter(this);
    }
    connect(_grid, &AssetGrid::tileSizeChanged, this, [this](int size) {
        _size->setValue(size);
        _wantedTimer.start();
    });
    connect(_size, &QSlider::valueChanged, _grid, &AssetGrid::setTileSize);
    _size->setValue(_grid->tileSize());
    _empty = new QLabel(_views);
    _empty->setObjectName(QStringLiteral("emptyText"));
    _empty->setAlignment(Qt::AlignCenter);
    _empty->setWordWrap(true);
    _empty->setForegroundRole(QPalette::PlaceholderText);
    _empty->setAttribute(Qt::WA_TransparentForMouseEvents);
    _views->installEventFilter(this);
    _tiles->setChecked(true);
    setLook(Look::Tiles);
}

bool AssetBrowser::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        if (watched == _views)
            _empty->setGeometry(_views->rect().adjusted(HintMargin, 0, -HintMargin, 0));
        _wantedTimer.start();
    }
    if (watched == _search && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape && !_search->text().isEmpty()) {
        _search->clear();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

/// Tabs that do not fit beside the rest are a list to choose from.
void AssetBrowser::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    int room = width() - _categories->sizeHint().width() - _search->minimumWidth();
    for (const QWidget *other : std::initializer_list<QWidget *>{_favourites, _recent, _size, _tiles, _lines})
        room -= other->sizeHint().width() + layout()->spacing();
    _categories->setVisible(room >= 0);
    _category->setVisible(room < 0);
}

QAbstractItemView &AssetBrowser::view() const
{
    return look() == Look::Tiles ? static_cast<QAbstractItemView &>(*_grid) : *_table;
}

/// Only what is seen has the model: a hidden view would lay out each change as well.
void AssetBrowser::attachModel()
{
    QAbstractItemView &shown = view();
    QAbstractItemView &hidden = look() == Look::Tiles ? static_cast<QAbstractItemView &>(*_table) : *_grid;
    if (shown.model() == &_model)
        return;
    hidden.setModel(nullptr);
    shown.setModel(&_model);
    QItemSelectionModel *own = shown.selectionModel();
    shown.setSelectionModel(_selection);
    own->deleteLater();
}

AssetBrowser::Look AssetBrowser::look() const
{
    return _views->currentWidget() == _table ? Look::Lines : Look::Tiles;
}

void AssetBrowser::setLook(Look look)
{
    _views->setCurrentWidget(look == Look::Lines ? static_cast<QWidget *>(_table) : _grid);
    attachModel();
    (look == Look::Lines ? _lines : _tiles)->setChecked(true);
    _size->setEnabled(look == Look::Tiles);
    _empty->raise();
    _wantedTimer.start();
}

void AssetBrowser::setTileSize(int size)
{
    _grid->setTileSize(size);
}

int AssetBrowser::tileSize() const
{
    return _grid->tileSize();
}

void AssetBrowser::setColumnWidths(const QList<int> &widths)
{
    _table->setColumnWidths(widths);
}

QList<int> AssetBrowser::columnWidths() const
{
    return _table->columnWidths();
}

void AssetBrowser::setFolder(const QString &path)
{
    _filter.folder = path;
    applyFilter();
}

void AssetBrowser::setCategory(kxAssetCategoryType category)
{
    for (int tab = 0; tab < _categories->count(); ++tab)
        if (_categories->tabData(tab).toInt() == static_cast<int>(category))
            _categories->setCurrentIndex(tab);
}

void AssetBrowser::setSpecial(AssetFilter::Special special)
{
    if (special == _filter.special)
        return;
    _filter.special = special;
    _favourites->setChecked(special == AssetFilter::Special::Favourites);
    _recent->setChecked(special == AssetFilter::Special::Recent);
    applyFilter();
}

void AssetBrowser::setText(const QString &text)
{
    _search->setText(text);
}

void AssetBrowser::applyText()
{
    _filter.setText(_search->text());
    applyFilter();
}

void AssetBrowser::applyFilter()
{
    _model.setFilter(_filter);
    if (const QModelIndex current = _selection->currentIndex(); _selection->isSelected(current))
        view().scrollTo(current);
    else
        view().scrollToTop();
}

void AssetBrowser::focusSearch()
{
    _search->setFocus(Qt::ShortcutFocusReason);
    _search->selectAll();
}

/// What is to be seen first, then a screen ahead and half a screen back.
void AssetBrowser::updateWanted()
{
    const QRect seen = view().viewport()->rect();
    const int perRow = look() == Look::Tiles ? std::max(1, seen.width() / std::max(1, _grid->gridSize().width())) : 1;
    const int rowHeight = look() == Look::Tiles ? _grid->gridSize().height() : _table->rowHeight(0);
    const int perScreen = perRow * (seen.height() / std::max(1, rowHeight) + 2);
    const QModelIndex top = view().indexAt(seen.topLeft() + QPoint(12, 12));
    const int first = std::max(0, top.isValid() ? top.row() : 0);
    const int end = std::min(_model.rowCount(), first + 2 * perScreen);
    std::vector<int> rows;
    for (int row = first; row < end; ++row)
        rows.push_back(row);
    for (int row = first - 1; row >= std::max(0, first - perScreen / 2); --row)
        rows.push_back(row);
    std::vector<PreviewCache::Wanted> wanted;
    wanted.reserve(rows.size());
    for (const int row : rows)
        wanted.push_back({QString::fromStdString(_model.entry(row).uuid), _model.entry(row).directory});
    _previews.want(wanted);
    announceSeen(rows);
}

void AssetBrowser::announceSeen(const std::vector<int> &rows)
{
    QStringList directories;
    for (const std::string &uuid : selected())
        if (const AssetEntry *entry = _model.find(uuid); entry && directories.size() < LibraryWatcher::MaxSeen / 2)
            directories.append(entry->directory);
    for (const int row : rows)
        directories.append(_model.entry(row).directory);
    directories.removeDuplicates();
    emit seenChanged(directories);
}

void AssetBrowser::updateTags()
{
    _tags->setTags(_model.tagCounts(MaxTags));
}

void AssetBrowser::setEmptyText(const QString &text)
{
    _emptyText = text;
    updateEmptyText();
}

QString AssetBrowser::hint() const
{
    if (!_emptyText.isEmpty())
        return _emptyText;
    if (_model.knownCount() == 0)
        return tr("There are no assets yet.\nDrop models or pictures here to import them.");
    if (!_filter.text().isEmpty() || !_filter.tags.isEmpty())
        return tr("No asset here matches the search.");
    if (_filter.special == AssetFilter::Special::Favourites)
        return tr("No favourites here yet.\nThe star in an asset's menu makes it one.");
    if (_filter.special == AssetFilter::Special::Recent)
        return tr("Nothing here was used lately.");
    return tr("This folder holds no assets of this kind.\nDrop models or pictures here to import them.");
}

void AssetBrowser::updateEmptyText()
{
    _empty->setText(hint());
    _empty->setVisible(_model.rowCount() == 0);
    _empty->raise();
}

std::vector<std::string> AssetBrowser::selected() const
{
    std::vector<int> rows;
    for (const QModelIndex &index : _selection->selectedIndexes())
        if (index.column() == 0)
            rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    std::vector<std::string> uuids;
    uuids.reserve(rows.size());
    for (const int row : rows)
        uuids.push_back(_model.entry(row).uuid);
    return uuids;
}

void AssetBrowser::select(const std::vector<std::string> &uuids)
{
    QItemSelection selection;
    QModelIndex last;
    for (const std::string &uuid : uuids)
        if (const QModelIndex index = _model.indexOf(uuid); index.isValid()) {
            selection.select(index, index.sibling(index.row(), _model.columnCount() - 1));
            last = index;
        }
    _selection->select(selection, QItemSelectionModel::ClearAndSelect);
    if (last.isValid()) {
        _selection->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
        view().scrollTo(last);
    }
}

void AssetBrowser::editName()
{
    const QModelIndex current = _selection->currentIndex();
    if (!current.isValid())
        return;
    const QModelIndex name = current.sibling(current.row(), 0);
    view().scrollTo(name); // what is not to be seen is not edited
    view().edit(name);
}
