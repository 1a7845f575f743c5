// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PlatePanel.h"

#include "AssetManager/EmptyHint.h"
#include "AssetManager/PlateModel.h"
#include "Kernel/kxScenegraph.h"

#include <QAction>
#include <QTreeView>

PlatePanel::PlatePanel(SceneActions &actions, QWidget *parent) : NodeTreePanel(actions, new PlateModel(actions), parent)
{
    setObjectName("platePanel");
    setAccessibleName(tr("Plates"));
    view().setObjectName("plateTree");
    view().setAccessibleName(tr("Plates over and under the picture"));
    view().setToolTip(tr("Drag plates to change their order, or move them by Alt and the arrow keys"));
    auto *opacity = addAction(tr("Change Opacity"), "opacity", QKeySequence(QStringLiteral("Shift+F2")), [this] {
        const QModelIndex cell = view().currentIndex().siblingAtColumn(PlateModel::OpacityColumn);
        if ((cell.flags() & Qt::ItemIsEditable) != 0)
            view().edit(cell);
    });
    view().insertAction(findChild<QAction *>("group"), opacity); // beside the name, which is edited likewise
    delete findChild<QAction *>("frame"); // plates are not placed in the space that the view looks into
    new EmptyHint(tr("Drag a plate asset here to lay it over or under the picture."), view(), [] {
        const osg::NodePtr root = kxScenegraph::getSceneplateRoot();
        return !root || root->getNChildren() == 0;
    });
}

PlatePanel::~PlatePanel() = default;
