// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneTreePanel.h"

#include "AssetManager/SceneActions.h"
#include "SceneFixture.h"

#include <QTreeView>

namespace {

class NodeTreePanelTest : public SceneFixture
{
protected:
    void showAtWidth(int width)
    {
        panel.resize(width, 400);
        panel.show();
        process();
    }

    SceneTreePanel panel{actions};
};

} // namespace

TEST_F(NodeTreePanelTest, LeavesTypesOutWhereNamesNeedTheRoom)
{
    showAtWidth(600);
    EXPECT_FALSE(panel.view().isColumnHidden(NodeTreeModel::TypeColumn));

    showAtWidth(180);
    EXPECT_TRUE(panel.view().isColumnHidden(NodeTreeModel::TypeColumn));
    EXPECT_FALSE(panel.view().isColumnHidden(NodeTreeModel::AssetColumn));

    showAtWidth(600);
    EXPECT_FALSE(panel.view().isColumnHidden(NodeTreeModel::TypeColumn));
}
