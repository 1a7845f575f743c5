// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PropertyPanel.h"
#include "AssetManager/AssetState.h"
#include "AssetManager/EditorSilence.h"
#include "AssetManager/PropertySection.h"
#include "AssetManager/SceneActions.h"
#include "AssetManager/SceneNodes.h"
#include "AssetManager/UndoOutside.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/NameAttachment.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int Margin = 4; // pixels: three numbers beside each other need the room

osg::MaterialPtr materialOf(std::uint32_t id)
{
    return osg::MaterialPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
}

bool isAlive(std::uint32_t id)
{
    return osg::FieldContainerFactory::the().isAlive(id);
}

bool haveOneType(const std::vector<std::uint32_t> &ids)
{
    const auto typeOf = [](std::uint32_t id) {
        const osg::FieldContainerPtr container = osg::FieldContainerFactory::the().getContainer(id);
        return container ? &container->getType() : nullptr;
    };
    return std::all_of(ids.begin(), ids.end(), [&](std::uint32_t id) { return typeOf(id) == typeOf(ids.front()); });
}

/// The same text of all, or that there are several.
QString common(const QStringList &texts)
{
    QStringList different = texts;
    different.removeDuplicates();
    return different.size() == 1 ? different.front() : PropertyPanel::tr("several");
}

QLabel *makeLabel(const char *name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

PropertyPanel::PropertyPanel(SceneActions &actions, QWidget *parent)
    : QWidget(parent), _actions(actions), _timer(new QTimer(this)), _hint(makeLabel("emptyHint", this)),
      _scroll(new QScrollArea(this)), _object(new QWidget), _name(new QLineEdit(_object)),
      _type(makeLabel("type", _object)), _asset(makeLabel("asset", _object)), _material(new QComboBox(this)),
      _materialAsset(makeLabel("materialAsset", this))
{
    setObjectName("propertyPanel");
    setAccessibleName(tr("Properties"));
    _scroll->setAccessibleName(accessibleName());
    _timer->setSingleShot(true);
    _timer->setInterval(0);
    _hint->setText(tr("Select an object or a material to see its properties here."));
    _hint->setAlignment(Qt::AlignCenter);
    _hint->setMargin(fontMetrics().height());
    _hint->setForegroundRole(QPalette::PlaceholderText);
    _name->setObjectName("name");
    _name->setAccessibleName(tr("Name"));
    new UndoOutside(*_name);
    auto *form = new QFormLayout(_object);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(tr("Name"), _name);
    form->addRow(tr("Type"), _type);
    form->addRow(tr("Asset"), _asset);
    _material->setObjectName("material");
    _material->setAccessibleName(tr("Material"));
    _material->setToolTip(tr("Which material is edited"));

    auto *holder = new QWidget;
    _sections = new QVBoxLayout(holder);
    _sections->setContentsMargins(Margin, Margin, Margin, Margin);
    _sections->addWidget(_object);
    _sections->addWidget(_material);
    _sections->addWidget(_materialAsset);
    _sections->addStretch();
    _scroll->setWidget(holder);
    _scroll->setWidgetResizable(true);
    _scroll->setFrameShape(QFrame::NoFrame);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_hint);
    layout->addWidget(_scroll);

    connect(_timer, &QTimer::timeout, this, &PropertyPanel::update);
    connect(_name, &QLineEdit::editingFinished, this, &PropertyPanel::rename);
    connect(_material, qOverload<int>(&QComboBox::activated), this, &PropertyPanel::buildMaterial);
    const auto &notifier = kxScenegraph::notifier();
    connect(&notifier, &kxScenegraphNotifier::selectionChanged, this, &PropertyPanel::selectionChanged);
    connect(&notifier, &kxScenegraphNotifier::documentChanged, this, &PropertyPanel::selectionChanged);
    connect(&notifier, &kxScenegraphNotifier::nameChanged, _timer, qOverload<>(&QTimer::start));
    osg::FieldContainerFactory::the().addListener(*this);
    _content = content();
    build();
}

PropertyPanel::~PropertyPanel()
{
    EditorSilence::keepIn(*this);
    osg::FieldContainerFactory::the().removeListener(*this);
}

void PropertyPanel::showMaterials(const QVector<quint32> &materialIds)
{
    _chosen.assign(materialIds.begin(), materialIds.end());
    update();
}

void PropertyPanel::containerChanged(osg::FieldContainer &container, osg::FieldMask /*fields*/)
{
    if (_watched.count(container.getFieldContainerId()) != 0)
        _timer->start();
}

void PropertyPanel::containerDestroyed(osg::FieldContainer &container)
{
    if (_watched.count(container.getFieldContainerId()) != 0)
        _timer->start();
}

void PropertyPanel::selectionChanged()
{
    _chosen.clear();
    update();
}

void PropertyPanel::update()
{
    _timer->stop();
    std::erase_if(_chosen, [](std::uint32_t id) { return !isAlive(id); });
    Content now = content();
    if (now == _content) {
        refresh();
        return;
    }
    _content = std::move(now);
    build();
}

PropertyPanel::Content PropertyPanel::content() const
{
    Content content;
    std::vector<osg::NodePtr> nodes;
    if (_chosen.empty())
        nodes = kxSelectionManager::getSelectedNodes();
    const auto add = [](Ids &ids, const osg::FieldContainerPtr &container) {
        const std::uint32_t id = container.getFieldContainerId();
        if (container && std::find(ids.begin(), ids.end(), id) == ids.end())
            ids.push_back(id);
    };
    std::set<osg::MaterialPtr> used;
    for (const osg::NodePtr &node : nodes) {
        add(content.nodes, node);
        add(content.cores, node->getCore());
        if (const auto camera = osg::CameraCorePtr::dcast(node->getCore()))
            add(content.cameras, camera->getCamera());
        kxMaterials::getMaterialsAndOverrideMaterials(node, used, false);
    }
    for (const std::uint32_t id : _chosen)
        used.insert(materialOf(id));
    for (const osg::MaterialPtr &material : used) {
        std::vector<osg::MaterialPtr> parts;
        kxMaterials::getRecursiveMaterials(material, parts, true);
        for (const osg::MaterialPtr &part : parts)
            add(content.materials, part);
    }
    return content;
}

void PropertyPanel::build()
{
    _watched.clear();
    for (const Ids *ids : {&_content.nodes, &_content.cores, &_content.cameras, &_content.materials})
        _watched.insert(ids->begin(), ids->end());
    removeSection(_coreSection);
    removeSection(_cameraSection);
    const bool isEmpty = _content.nodes.empty() && _content.materials.empty();
    _hint->setVisible(isEmpty);
    _scroll->setVisible(!isEmpty);
    _object->setVisible(!_content.nodes.empty());
    if (!_content.cores.empty() && haveOneType(_content.cores)) {
        const osg::NodePtr first = kxNodeUtils::getNodeFromId(_content.nodes.front());
        _coreSection = addSection(SceneNodes::typeLabel(first), _content.cores, "core");
    }
    if (!_content.cameras.empty())
        _cameraSection = addSection(tr("View"), _content.cameras, "camera");
    buildMaterialChoice();
    buildMaterial();
    refresh();
}

void PropertyPanel::buildMaterialChoice()
{
    _material->clear();
    if (_content.materials.size() > 1 && haveOneType(_content.materials))
        _material->addItem(tr("All %1 materials").arg(_content.materials.size()));
    for (const std::uint32_t id : _content.materials)
        _material->addItem(QString::fromStdString(kxMaterials::getName(materialOf(id))), id);
    _material->setVisible(_content.materials.size() > 1);
}

void PropertyPanel::buildMaterial()
{
    removeSection(_materialSection);
    const int index = _material->currentIndex();
    _materialAsset->setVisible(index >= 0);
    if (index < 0)
        return;
    const bool isOne = _material->itemData(index).isValid();
    const Ids ids = isOne ? Ids{_material->itemData(index).toUInt()} : _content.materials;
    _materialSection = addSection(tr("Material: %1").arg(_material->itemText(index)), ids, "materialFields");
    refreshNames();
}

PropertySection *PropertyPanel::addSection(const QString &title, const Ids &ids, const char *name)
{
    if (!std::all_of(ids.begin(), ids.end(), isAlive))
        return nullptr;
    auto *section = new PropertySection(_actions, title, ids, this);
    section->setObjectName(name);
    if (section->isEmpty()) {
        delete section;
        return nullptr;
    }
    // The material's choice and state stand above its fields, those of the object above these.
    const int place = _sections->indexOf(_material);
    _sections->insertWidget(QByteArray(name) == "materialFields" ? _sections->count() - 1 : place, section);
    return section;
}

/// An editor of it may be what asked for this.
void PropertyPanel::removeSection(PropertySection *&section)
{
    if (!section)
        return;
    section->hide();
    section->setObjectName({});
    section->deleteLater();
    section = nullptr;
}

void PropertyPanel::refresh()
{
    for (PropertySection *section : {_coreSection, _cameraSection, _materialSection})
        if (section)
            section->refresh();
    refreshNames();
}

void PropertyPanel::refreshNames()
{
    QStringList names, types, assets;
    for (const std::uint32_t id : _content.nodes)
        if (const osg::NodePtr node = kxNodeUtils::getNodeFromId(id)) {
            names.append(QString::fromStdString(kxNodeUtils::getName(node)));
            types.append(SceneNodes::typeLabel(node));
            const QString state = AssetState(node).text();
            assets.append(state.isEmpty() ? tr("none") : state);
        }
    const bool isOne = names.size() == 1;
    _name->setReadOnly(!isOne);
    _name->setPlaceholderText(isOne ? QString() : tr("%1 objects").arg(names.size()));
    if (!_name->isModified() || !_name->hasFocus())
        _name->setText(isOne ? names.front() : QString());
    _type->setText(common(types));
    _asset->setText(common(assets));
    const osg::MaterialPtr material = materialOf(_material->currentData().toUInt());
    const QString state = AssetState(material).text();
    _materialAsset->setText(state);
    _materialAsset->setVisible(!state.isEmpty());
    for (int i = 0; i < _material->count(); ++i)
        if (const osg::MaterialPtr each = materialOf(_material->itemData(i).toUInt()))
            _material->setItemText(i, QString::fromStdString(kxMaterials::getName(each)));
}

void PropertyPanel::rename()
{
    if (!_name->isModified() || _content.nodes.size() != 1)
        return;
    _name->setModified(false);
    _actions.rename(_content.nodes.front(), _name->text().toStdString());
    refreshNames();
}
