// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Screenshot.h"

#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderDialog.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/ImportDialog.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/MainWindow.h"
#include "AssetManager/SceneSide.h"
#include "AssetManager/SceneView.h"
#include "AssetManager/ScriptSide.h"
#include "AssetManager/TrashDialog.h"
#include "AssetManager/WelcomeDialog.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"

#include <QApplication>
#include <QDockWidget>

#include <cstdio>

namespace {

constexpr int LookTime = 50;  // milliseconds between looks at whether something happens
constexpr int CalmLooks = 16; // in a row: what is shown follows what was read and what changed

constexpr int Samples = 16; // for each pixel of the scene: more is hardly seen at this size

const QString Tiles = QStringLiteral("tiles");
const QString List = QStringLiteral("list");
const QString Assets = QStringLiteral("assets");
const QString View = QStringLiteral("view");
const QString Tour = QStringLiteral("tour");

QDockWidget *findPanel(const MainWindow &window, const QString &view)
{
    return view.isEmpty() ? nullptr : window.findChild<QDockWidget *>(view + QStringLiteral("Dock"));
}

} // namespace

QStringList Screenshot::views()
{
    QStringList all = {Tiles,
                       List,
                       Assets,
                       QStringLiteral("folders"),
                       QStringLiteral("details"),
                       View,
                       QStringLiteral("tree"),
                       QStringLiteral("property"),
                       QStringLiteral("material"),
                       QStringLiteral("environment"),
                       QStringLiteral("plate"),
                       QStringLiteral("welcome"),
                       QStringLiteral("import"),
                       QStringLiteral("move"),
                       QStringLiteral("trash"),
                       Tour};
    if (ScriptSide::isAvailable())
        all.append(QStringLiteral("python"));
    return all;
}

Screenshot::Screenshot(MainWindow &window, Options options, int exitCode)
    : QObject(&window), _window(window), _options(std::move(options)), _exitCode(exitCode)
{
    const bool hasPicture = QStringList{QString(), Tiles, List, View, Tour}.contains(_options.view);
    _window.scene().view().setSampleLimit(hasPicture ? Samples : 1);
    connect(&_timer, &QTimer::timeout, this, &Screenshot::look);
    _timer.start(LookTime);
}

Screenshot::~Screenshot() = default;

void Screenshot::look()
{
    // Looks are counted, not time: a time may pass while the window is too busy to begin anything.
    _calmLooks = _window.isIdle() ? _calmLooks + 1 : 0;
    if (_calmLooks < CalmLooks)
        return;
    if (!_isPrepared) {
        prepare();
        return;
    }
    _timer.stop();
    const bool isTaken = take();
    if (!isTaken)
        std::fprintf(stderr, "%s cannot be written\n", qPrintable(_options.file));
    QApplication::exit(_exitCode == 0 && !isTaken ? 1 : _exitCode);
}

/// Only once the libraries were read: before there is nothing to select.
void Screenshot::prepare()
{
    show();
    select();
    _window.scene().view().frameAll();
    _isPrepared = true;
    _calmLooks = 0;
}

void Screenshot::show()
{
    if (_options.view == Tiles || _options.view == List)
        _window.browser().setLook(_options.view == List ? AssetBrowser::Look::Lines : AssetBrowser::Look::Tiles);
    if (QDockWidget *panel = findPanel(_window, _options.view)) {
        panel->show();
        panel->raise();
    }
    if (_options.view == Tour)
        _window.startTour();
}

/// As it opens, without waiting for an answer; null: another view is wanted.
std::unique_ptr<QDialog> Screenshot::makeDialog() const
{
    const QStringList libraries = _window.libraries().folders().libraries();
    if (_options.view == QLatin1String("welcome"))
        return std::make_unique<WelcomeDialog>(libraries.value(0), &_window);
    if (_options.view == QLatin1String("import"))
        return std::make_unique<ImportDialog>(QStringList{"chair.glb", "studio.exr"}, _window.targetFolder(), &_window);
    if (_options.view == QLatin1String("move"))
        return std::make_unique<FolderDialog>(_window.libraries().folders(), _window.targetFolder(), QStringList(),
                                              &_window);
    if (_options.view == QLatin1String("trash"))
        return std::make_unique<TrashDialog>(_window.libraries().actions(), libraries, &_window);
    return nullptr;
}

void Screenshot::select()
{
    if (_options.asset.isEmpty())
        return;
    const AssetModel &assets = _window.libraries().assets();
    std::vector<std::string> uuids;
    std::vector<osg::NodePtr> nodes;
    for (int row = 0; row < assets.rowCount(); ++row) {
        if (assets.entry(row).name != _options.asset)
            continue;
        uuids.push_back(assets.entry(row).uuid);
        for (const kxNodePtr &node : kxScenegraph::getAssetNodes(kxScenegraph::getRoot(), uuids.back(), -1))
            nodes.emplace_back(node);
    }
    if (uuids.empty()) {
        std::fprintf(stderr, "No asset is named \"%s\"\n", qPrintable(_options.asset));
        _exitCode = _exitCode == 0 ? 1 : _exitCode;
    }
    _window.browser().select(uuids);
    kxSelectionManager::selectNodes(nodes);
}

bool Screenshot::take() const
{
    if (const std::unique_ptr<QDialog> dialog = makeDialog()) {
        dialog->show(); // hints and focus are those of a dialog that is seen
        QCoreApplication::processEvents();
        return dialog->grab().save(_options.file);
    }
    QWidget *panel =
        _options.view == Assets ? static_cast<QWidget *>(&_window.browser()) : findPanel(_window, _options.view);
    return (panel ? panel->grab() : _window.grab()).save(_options.file);
}
