// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DetailsPane.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
#include "AssetManager/EditorSilence.h"
#include "AssetManager/ElidedLine.h"
#include "AssetManager/FlowLayout.h"
#include "AssetManager/PreviewCache.h"
#include "AssetManager/UndoOutside.h"

#include <QCompleter>
#include <QDateTime>
#include <QDir>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QRegularExpression>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int LeastLetters = 38; // wide
constexpr std::size_t MaxPreviews = 4;
constexpr int PreviewsPerRow = 2;
constexpr int PreviewGap = 6; // pixels

/// Takes the room that is there, whatever it shows.
class Preview final : public QLabel
{
public:
    explicit Preview(QWidget *parent) : QLabel(parent)
    {
        setMinimumSize(120, 120);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
    }

    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSizeHint() const override { return minimumSize(); }
};

QLabel *makeValue(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setWordWrap(true);
    QSizePolicy policy = label->sizePolicy();         // which knows already that lines that wrap need height
    policy.setHorizontalPolicy(QSizePolicy::Ignored); // a long word does not widen the panel
    label->setSizePolicy(policy);
    return label;
}

} // namespace

DetailsPane::DetailsPane(const AssetModel &model, const AssetStates &states, const PreviewCache &previews,
                         QWidget *parent)
    : QWidget(parent), _model(model), _states(states), _previews(previews)
{
    setObjectName(QStringLiteral("detailsPane"));
    setAccessibleName(tr("Details of the selected assets"));
    _preview = new Preview(this);
    _preview->setObjectName(QStringLiteral("preview"));
    _preview->setAlignment(Qt::AlignCenter);
    _preview->installEventFilter(this);
    _hint = new QLabel(tr("Select an asset to see what it is."), this);
    _hint->setAlignment(Qt::AlignCenter);
    _hint->setWordWrap(true);
    _hint->setForegroundRole(QPalette::PlaceholderText);

    makeForm();

    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->addWidget(_preview, 1);
    layout->addWidget(_hint);
    layout->addWidget(_form);
    auto *scroll = new QScrollArea(this);
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setAccessibleName(accessibleName());
    scroll->setMinimumWidth(LeastLetters * fontMetrics().averageCharWidth());
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(scroll);

    connectEditors();
    refresh();
}

void DetailsPane::makeForm()
{
    _form = new QWidget(this);
    _name = new QLineEdit(_form);
    _name->setObjectName(QStringLiteral("name"));
    _favourite = new QToolButton(_form);
    _favourite->setObjectName(QStringLiteral("favourite"));
    _favourite->setText(QStringLiteral("★"));
    _favourite->setCheckable(true);
    _favourite->setAutoRaise(true);
    _favourite->setToolTip(tr("Favourite"));
    _favourite->setAccessibleName(tr("Favourite"));
    auto *name = new QHBoxLayout;
    name->setContentsMargins(0, 0, 0, 0);
    name->addWidget(_name);
    name->addWidget(_favourite);
    _type = makeValue(_form);
    _type->setObjectName(QStringLiteral("type"));
    _modified = makeValue(_form);
    _modified->setObjectName(QStringLiteral("modified"));
    _location = makeValue(_form);
    _location->setObjectName(QStringLiteral("location"));
    _uuid = new ElidedLine(_form); // it has no place to break
    _uuid->setObjectName(QStringLiteral("identity"));
    _uuid->setAccessibleName(tr("Identity"));
    _state = makeValue(_form);
    _state->setObjectName(QStringLiteral("state"));
    _tags = new QWidget(_form);
    _tags->setObjectName(QStringLiteral("tags"));
    _newTag = new QLineEdit(_form);
    _newTag->setObjectName(QStringLiteral("newTag"));
    _newTag->setPlaceholderText(tr("Add a tag"));
    _newTag->setAccessibleName(tr("Add a tag"));
    auto *allTags = new QWidget(_form);
    auto *tags = new QVBoxLayout(allTags);
    tags->setContentsMargins(0, 0, 0, 0);
    tags->addWidget(_tags);
    tags->addWidget(_newTag);
    auto *form = new QFormLayout(_form);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(tr("&Name"), name);
    if (auto *label = qobject_cast<QLabel *>(form->labelForField(name)))
        label->setBuddy(_name);
    form->addRow(tr("Type"), _type);
    form->addRow(tr("Tags"), allTags);
    form->addRow(tr("Modified"), _modified);
    form->addRow(tr("Folder"), _location);
    form->addRow(tr("Identity"), _uuid);
    form->addRow(tr("State"), _state);
    for (QLabel *value : {_type, _modified, _location, _state})
        if (auto *label = qobject_cast<QLabel *>(form->labelForField(value)))
            label->setAlignment(Qt::AlignLeading | Qt::AlignTop); // beside the first line of several
}

void DetailsPane::connectEditors()
{
    connect(_name, &QLineEdit::editingFinished, this, [this] {
        const AssetEntry *entry = _uuids.size() == 1 ? _model.find(_uuids.front()) : nullptr;
        const QString text = _name->text().trimmed();
        if (entry && !text.isEmpty() && text != entry->name)
            emit renameRequested(ids().first(), text);
        else if (entry)
            _name->setText(entry->name);
    });
    connect(_newTag, &QLineEdit::returnPressed, this, &DetailsPane::addTag);
    for (QLineEdit *line : {_name, _newTag})
        new UndoOutside(*line);
    connect(_favourite, &QToolButton::clicked, this,
            [this](bool isChecked) { emit favouriteChanged(ids(), isChecked); });
    connect(&_previews, &PreviewCache::loaded, this, [this](const QString &uuid) {
        if (previewed().contains(uuid))
            showPreview();
    });
    connect(&_states, &AssetStates::changed, this, &DetailsPane::refresh);
}

DetailsPane::~DetailsPane()
{
    EditorSilence::keepIn(*this);
}

QStringList DetailsPane::ids() const
{
    QStringList texts;
    for (const std::string &uuid : _uuids)
        texts.append(QString::fromStdString(uuid));
    return texts;
}

QStringList DetailsPane::previewed() const
{
    QStringList texts;
    for (std::size_t i = 0; i < std::min(MaxPreviews, _uuids.size()); ++i)
        texts.append(QString::fromStdString(_uuids[i]));
    return texts;
}

void DetailsPane::show(const std::vector<std::string> &uuids)
{
    _uuids = uuids;
    refresh();
}

void DetailsPane::refresh()
{
    std::erase_if(_uuids, [this](const std::string &uuid) { return !_model.find(uuid); });
    _form->setVisible(!_uuids.empty());
    _hint->setVisible(_uuids.empty());
    showPreview();
    if (_uuids.empty())
        return;
    const AssetEntry &entry = *_model.find(_uuids.front());
    const bool isOne = _uuids.size() == 1;
    _name->setEnabled(isOne);
    if (!_name->isModified() || !_name->hasFocus()) {
        _name->setText(isOne ? entry.name : tr("%n assets", nullptr, static_cast<int>(_uuids.size())));
        _name->setCursorPosition(0);
    }
    const auto has = [&](auto value) {
        return std::all_of(_uuids.begin(), _uuids.end(),
                           [&](const std::string &uuid) { return value(*_model.find(uuid)) == value(entry); });
    };
    const QString several = tr("(different)");
    _type->setText(has([](const AssetEntry &one) { return one.type; }) ? entry.type : several);
    _location->setText(has([](const AssetEntry &one) { return one.folder; }) ? QDir::toNativeSeparators(entry.folder)
                                                                             : several);
    _modified->setText(isOne ? QLocale().toString(QDateTime::fromMSecsSinceEpoch(entry.modified), QLocale::ShortFormat)
                             : QString());
    _uuid->setWholeText(isOne ? QString::fromStdString(entry.uuid) : QString());
    setRowsVisible({_modified, _uuid, _state}, isOne);
    _favourite->setChecked(std::all_of(_uuids.begin(), _uuids.end(),
                                       [this](const std::string &uuid) { return _model.find(uuid)->isFavourite; }));
    const QStringList reasons = isOne ? _states.reasonsOf(entry.uuid) : QStringList();
    _state->setText(reasons.isEmpty() && isOne ? tr("Not used in the scene.") : reasons.join('\n'));
    showTags();
}

/// Tags that all of them have, as buttons that take them away.
void DetailsPane::showTags()
{
    qDeleteAll(_tags->findChildren<QToolButton *>(QString(), Qt::FindDirectChildrenOnly));
    delete _tags->layout(); // NOLINT(cppcoreguidelines-owning-memory): a widget gives its layout up only like this
    auto *layout = new FlowLayout(_tags);
    const bool haveTags = std::all_of(_uuids.begin(), _uuids.end(), [this](const std::string &uuid) {
        return _model.find(uuid)->category == Material; // other items, those of environment materials too, answer none
    });
    _newTag->setEnabled(haveTags);
    _newTag->setPlaceholderText(haveTags ? tr("Add a tag") : tr("Only materials have tags."));
    if (!haveTags)
        _newTag->clear(); // what was begun for a material would hide why it cannot go on
    int count = 0;
    for (const QString &tag : _model.find(_uuids.front())->tags.names()) {
        if (!std::all_of(_uuids.begin(), _uuids.end(),
                         [&](const std::string &uuid) { return _model.find(uuid)->tags.contains(tag); }))
            continue;
        auto *button = new QToolButton(_tags);
        button->setObjectName("removeTag:" + tag);
        button->setText(tag + QStringLiteral("  ×"));
        button->setToolTip(tr("Remove the tag \"%1\"").arg(tag));
        connect(button, &QToolButton::clicked, this, [this, tag] { emit tagsEdited(ids(), {}, {tag}); });
        layout->addWidget(button);
        ++count;
    }
    _tags->setVisible(count > 0);
    // Buttons that are made while their panel is hidden are not counted by the layouts around it.
    for (QWidget *part = _tags; part != this; part = part->parentWidget())
        part->updateGeometry();
}

void DetailsPane::addTag()
{
    // Metadata keeps tags as one text, in which these separate them.
    const QStringList tags = _newTag->text().split(QRegularExpression("[\\s,\"]+"), Qt::SkipEmptyParts);
    _newTag->clear();
    if (!tags.isEmpty() && !_uuids.empty())
        emit tagsEdited(ids(), tags, {});
}

/// Of several assets the first few, side by side.
void DetailsPane::showPreview()
{
    const QStringList ids = previewed();
    const int shown = ids.size();
    const int perRow = shown > 1 ? PreviewsPerRow : 1;
    const int rows = (shown + perRow - 1) / perRow;
    _preview->setVisible(shown > 0);
    if (shown == 0)
        return;
    const qreal ratio = devicePixelRatioF();
    QPixmap picture(_preview->size() * ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    const QSize cell(picture.width() / perRow, picture.height() / rows);
    const int gap = shown > 1 ? PreviewGap : 0;
    for (int i = 0; i < shown; ++i) {
        const QPixmap preview = _previews.find(ids[i]);
        if (preview.isNull())
            continue;
        const QPixmap fitted = preview.scaled(cell - QSize(gap, gap), Qt::KeepAspectRatio, Qt::SmoothTransformation);
        const QPoint corner(i % perRow * cell.width(), i / perRow * cell.height());
        painter.drawPixmap(corner + QPoint(cell.width() - fitted.width(), cell.height() - fitted.height()) / 2, fitted);
    }
    painter.end();
    picture.setDevicePixelRatio(ratio);
    _preview->setPixmap(picture);
}

bool DetailsPane::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == _preview && event->type() == QEvent::Resize)
        showPreview();
    return QWidget::eventFilter(watched, event);
}

void DetailsPane::setRowsVisible(const std::vector<QWidget *> &values, bool areVisible)
{
    for (QWidget *value : values) {
        value->setVisible(areVisible);
        static_cast<QFormLayout *>(_form->layout())->labelForField(value)->setVisible(areVisible);
    }
}
