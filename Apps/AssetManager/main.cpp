// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibrarySide.h"
#include "AssetManager/MainWindow.h"
#include "AssetManager/ScriptOptions.h"
#include "AssetManager/ScriptSide.h"
#include "AssetManager/Settings.h"
#include "AssetSession/kxAssetSession.h"
#include "Kernel/kxModalQuestion.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QTimer>

#include <cstdio>
#include <functional>

namespace {

constexpr int CalmTime = 400; // milliseconds: what is shown follows what was read

/// Writes a picture of the window once nothing happens in it any more, and ends the program: with this code, unless that
/// is 0 and the picture cannot be written.
void takePicture(MainWindow &window, const QString &file, int code)
{
    auto *timer = new QTimer(&window);
    QElapsedTimer calm;
    calm.start();
    QObject::connect(timer, &QTimer::timeout, &window, [&window, file, code, calm]() mutable {
        if (!window.isIdle())
            calm.restart();
        if (calm.elapsed() < CalmTime)
            return;
        const bool isWritten = window.grab().save(file);
        if (!isWritten)
            std::fprintf(stderr, "%s cannot be written\n", qPrintable(file));
        QApplication::exit(code == 0 && !isWritten ? 1 : code);
    });
    timer->start(50);
}

/// Runs the script once the libraries are read, and goes on with its exit code.
void runScript(MainWindow &window, const ScriptOptions &script, const std::function<void(int code)> &then)
{
    auto *timer = new QTimer(&window);
    QObject::connect(timer, &QTimer::timeout, &window, [&window, timer, script, then] {
        if (window.libraries().scan().isRunning())
            return;
        timer->stop();
        then(window.scripts().runFile(script.file(), script.arguments()));
    });
    timer->start(20);
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
    const ScriptOptions script(parser);
    if (script.isSet() && !ScriptSide::isAvailable()) {
        std::fputs("asset-manager: this build comes without Python and runs no scripts\n", stderr);
        return 1;
    }

    const kxAssetSession session(kxAssetSession::MainView::Program);
    MainWindow window(session.manager());
    window.show();
    window.openLibraries(parser.positionalArguments());
    const auto goOn = [&](int code) {
        if (parser.isSet(picture))
            takePicture(window, parser.value(picture), code);
        else if (script.isSet() && !script.keepsOpen())
            QApplication::exit(code);
    };
    if (script.isSet() && !script.keepsOpen())
        kxModalQuestion::setMode(kxModalQuestion::Mode::Headless); // nobody is there to answer
    if (script.isSet())
        runScript(window, script, goOn);
    else if (parser.isSet(picture))
        goOn(0);
    else if (Settings::isFirstStart() && parser.positionalArguments().isEmpty())
        QTimer::singleShot(0, &window, &MainWindow::welcome); // once the window is there
    return QApplication::exec();
}
