// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Appearance.h"
#include "AssetManager/Language.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/MainWindow.h"
#include "AssetManager/ProgramSetUp.h"
#include "AssetManager/SceneSide.h"
#include "AssetManager/Screenshot.h"
#include "AssetManager/ScriptOptions.h"
#include "AssetManager/ScriptSide.h"
#include "AssetManager/Settings.h"
#include "AssetSession/kxAssetSession.h"
#include "Kernel/kxModalQuestion.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace {

constexpr int WrongUsage = 2;

QString text(const char *source)
{
    return QApplication::translate("main", source);
}

QCommandLineOption option(const char *name, const QString &description, const QString &value)
{
    return {QLatin1String(name), description, value};
}

/// The value of an option; ends the program where it is none of the choices.
QString choice(const QCommandLineParser &parser, const char *name, const QStringList &choices)
{
    QString value = parser.value(QLatin1String(name));
    if (value.isEmpty() || choices.contains(value))
        return value;
    std::fprintf(stderr, "--%s: %s\n", name, qPrintable(choices.join(QStringLiteral(", "))));
    std::exit(WrongUsage); // NOLINT(concurrency-mt-unsafe): no other thread runs yet
}

void declare(QCommandLineParser &parser)
{
    parser.setApplicationDescription(text(QT_TRANSLATE_NOOP("main", "Keeps libraries of assets for 3D scenes.")));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("libraries"),
                                 text(QT_TRANSLATE_NOOP("main", "Folders with assets, and a scene to open")),
                                 QStringLiteral("[LIBRARY...] [SCENE.osb]"));
    parser.addOption(option("language", text(QT_TRANSLATE_NOOP("main", "Speak this language: de or en.")), "CODE"));
    parser.addOption(option("appearance", text(QT_TRANSLATE_NOOP("main", "Be light or dark, whatever the desktop is.")),
                            "light|dark"));
    parser.addOption(
        option("screenshot", text(QT_TRANSLATE_NOOP("main", "Write a picture of the window and end.")), "FILE.png"));
    parser.addOption(option(
        "show",
        text(QT_TRANSLATE_NOOP("main", "For the picture: tiles, list, the tour, or one panel or dialog alone (%1)."))
            .arg(Screenshot::views().mid(2).join(QStringLiteral(", "))),
        "VIEW"));
    parser.addOption(
        option("select", text(QT_TRANSLATE_NOOP("main", "For the picture: the name of an asset to select.")), "NAME"));
}

/// Scenes among the arguments are opened last, when the libraries that their assets come from are open.
void open(MainWindow &window, const QStringList &arguments)
{
    const auto isScene = [](const QString &argument) { return argument.endsWith(QLatin1String(".osb")); };
    QStringList libraries = arguments;
    libraries.erase(std::remove_if(libraries.begin(), libraries.end(), isScene), libraries.end());
    window.openLibraries(libraries);
    for (const QString &argument : arguments)
        if (isScene(argument))
            window.scene().open(argument);
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
    ProgramSetUp::begin();
    QApplication application(argc, argv);
    ProgramSetUp::introduce(QApplication::arguments());
    QApplication::setApplicationVersion(QStringLiteral(KX_VERSION));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/kxassets-asset-manager.svg")));
    QCommandLineParser parser;
    declare(parser);
    const ScriptOptions script(parser);
    if (script.isSet() && !ScriptSide::isAvailable()) {
        std::fputs("asset-manager: this build comes without Python and runs no scripts\n", stderr);
        return 1;
    }
    choice(parser, "language", Language::available());
    Appearance::apply(Appearance::byName(choice(parser, "appearance", Appearance::names())));
    const Screenshot::Options picture{parser.value("screenshot"), choice(parser, "show", Screenshot::views()),
                                      parser.value("select")};

    const kxAssetSession session(kxAssetSession::MainView::Program);
    MainWindow window(session.manager());
    window.show();
    open(window, parser.positionalArguments());
    const auto goOn = [&](int code) {
        if (!picture.file.isEmpty())
            new Screenshot(window, picture, code); // owned by the window
        else if (script.isSet() && !script.keepsOpen())
            QApplication::exit(code);
    };
    if (script.isSet() && !script.keepsOpen())
        kxModalQuestion::setMode(kxModalQuestion::Mode::Headless); // nobody is there to answer
    if (script.isSet())
        runScript(window, script, goOn);
    else if (!picture.file.isEmpty())
        goOn(0);
    else if (Settings::isFirstStart() && parser.positionalArguments().isEmpty())
        QTimer::singleShot(0, &window, &MainWindow::welcome); // once the window is there
    return QApplication::exec();
}
