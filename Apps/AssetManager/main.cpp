// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MainWindow.h"
#include "AssetSession/kxAssetSession.h"

#include <QApplication>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const kxAssetSession session;
    MainWindow window;
    window.show();
    return QApplication::exec();
}
