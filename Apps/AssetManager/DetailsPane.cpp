// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DetailsPane.h"
#include "AssetManager/EditorSilence.h"

#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
#include "AssetManager/PreviewCache.h"

#include <QCompleter>
#include <QDateTime>
#include <QDir>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpression>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int TagsPerRow = 2;

QLabel *makeValue(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setWordWrap(true);
    return label;
}

} // namespace

DetailsPane::DetailsPane(const AssetModel &model, const AssetStates &states, const PreviewCache &previews,
                         QWidget *parent)
    : QWidget(parent), _model(model), _states(states), _previews(previews)
{
    setObjectName(QStringLiteral("detailsPane"));
    setAccessibleName(tr("Details of the selected assets"));
    _preview = new QLabel(this);
    _preview->setObjectName(QStringLiteral("preview"));
    _preview->setAlignment(Qt::AlignCenter);
    _preview->setMinimumSize(120, 120);
    _preview->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
    _hint = new QLabel(tr("Select an asset to see what it is."), this);
    _hint->setAlignment(Qt::AlignCenter);
    _hint->setWordWrap(true);
    _hint->setForegroundRole(QPalette::PlaceholderText);

    makeForm();

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(_preview, 1);
    layout->addWidget(_hint);
    layout->addWidget(_form);

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
    _location = makeValue(_form);
    _location->setObjectName(QStringLiteral("location"));
    _uuid = makeValue(_form);
    _state = makeValue(_form);
    _state->setObjectName(QStringLiteral("state"));
    _tags = new QWidget(_form);
    _tags->setObjectName(QStringLiteral("tags"));
    _newTag = new QLineEdit(_form);
    _newTag->setObjectName(QStringLiteral("newTag"));
    _newTag->setPlaceholderText(tr("Add a tag"));
    _newTag->setAccessibleName(tr("Add a tag"));
    auto *form = new QFormLayout(_form);
    form->addRow(tr("&Name"), name);
    if (auto *label = qobject_cast<QLabel *>(form->labelForField(name)))
        label->setBuddy(_name);
    form->addRow(tr("Type"), _type);
    form->addRow(tr("Tags"), _tags);
    form->addRow(QString(), _newTag);
    form->addRow(tr("Modified"), _modified);
    form->addRow(tr("Folder"), _location);
    form->addRow(tr("Identity"), _uuid);
    form->addRow(tr("State"), _state);
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
    connect(_favourite, &QToolButton::clicked, this,
            [this](bool isChecked) { emit favouriteChanged(ids(), isChecked); });
    connect(&_previews, &PreviewCache::loaded, this, [this](const QString &uuid) {
        if (_uuids.size() == 1 && uuid == ids().first())
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
    if (!_name->isModified() || !_name->hasFocus())
        _name->setText(isOne ? entry.name : tr("%n assets", nullptr, static_cast<int>(_uuids.size())));
    const auto has = [&](auto value) {
        return std::all_of(_uuids.begin(), _uuids.end(),
                           [&](const std::string &uuid) { return value(*_model.find(uuid)) == value(entry); });
    };
    const QString several = tr("(different)");
    _type->setText(has([](const AssetEntry &one) { return one.type; }) ? entry.type : several);
    _location->setText(has([](const AssetEntry &one) { return one.folder; }) ? QDir::toNativeSeparators(entry.folder)
                                                                             : several);
    _modified->setText(isOne ? QLocale().toString(QDateTime::fromMSecsSinceEpoch(entry.modified), QLocale::LongFormat)
                             : QString());
    _uuid->setText(isOne ? QString::fromStdString(entry.uuid) : QString());
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
    auto *layout = new QGridLayout(_tags);
    layout->setContentsMargins(0, 0, 0, 0);
    const bool haveTags = std::all_of(_uuids.begin(), _uuids.end(), [this](const std::string &uuid) {
        const kxAssetCategoryType category = _model.find(uuid)->category;
        return category == Material || category == Environment;
    });
    _newTag->setEnabled(haveTags);
    _newTag->setToolTip(haveTags ? QString() : tr("Only materials have tags."));
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
        layout->addWidget(button, count / TagsPerRow, count % TagsPerRow, Qt::AlignLeft);
        ++count;
    }
    _tags->setVisible(count > 0);
}

void DetailsPane::addTag()
{
    // Metadata keeps tags as one text, in which these separate them.
    const QStringList tags = _newTag->text().split(QRegularExpression("[\\s,\"]+"), Qt::SkipEmptyParts);
    _newTag->clear();
    if (!tags.isEmpty() && !_uuids.empty())
        emit tagsEdited(ids(), tags, {});
}

void DetailsPane::showPreview()
{
    const QPixmap pixmap = _uuids.size() == 1 ? _previews.find(ids().first()) : QPixmap();
    _preview->setVisible(!_uuids.empty());
    if (pixmap.isNull())
        _preview->setPixmap({});
    else
        _preview->setPixmap(pixmap.scaled(_preview->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void DetailsPane::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    showPreview();
}
