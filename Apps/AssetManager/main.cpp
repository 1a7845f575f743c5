// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MainWindow.h"
#include "AssetManager/Settings.h"
#include "AssetSession/kxAssetSession.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QTimer>

#include <cstdio>

namespace {

constexpr int CalmTime = 400; // milliseconds: what is shown follows what was read

/// Writes a picture of the window once nothing happens in it any more, and ends the program.
void takePicture(MainWindow &window, const QString &file)
{
    auto *timer = new QTimer(&window);
    QElapsedTimer calm;
    calm.start();
    QObject::connect(timer, &QTimer::timeout, &window, [&window, file, calm]() mutable {
        if (!window.isIdle())
            calm.restart();
        if (calm.elapsed() < CalmTime)
            return;
        const bool isWritten = window.grab().save(file);
        if (!isWritten)
            std::fprintf(stderr, "%s cannot be written\n", qPrintable(file));
        QApplication::exit(isWritten ? 0 : 1);
    });
    timer->start(50);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("asset-manager"));
    QApplication::setApplicationVersion(QStringLiteral(KX_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(QApplication::translate("main", "Keeps libraries of assets for 3D scenes."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("libraries"), QApplication::translate("main", "Folders with assets"),
                                 QStringLiteral("[LIBRARY...]"));
    const QCommandLineOption picture(QStringLiteral("screenshot"),
                                     QApplication::translate("main", "Write a picture of the window and end."),
                                     QStringLiteral("FILE.png"));
    parser.addOption(picture);
    parser.process(application);

    const kxAssetSession session(kxAssetSession::MainView::Program);
    MainWindow window(session.manager());
    window.show();
    window.openLibraries(parser.positionalArguments());
    if (parser.isSet(picture))
        takePicture(window, parser.value(picture));
    else if (Settings::isFirstStart() && parser.positionalArguments().isEmpty())
        QTimer::singleShot(0, &window, &MainWindow::welcome); // once the window is there
    return QApplication::exec();
}
