// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

ScriptOptions::ScriptOptions(QCommandLineParser &parser)
{
    const QCommandLineOption script(
        QStringLiteral("script"),
        QCoreApplication::translate("main",
                                    "Run a Python file once the libraries are read, and end with its exit code. "
                                    "What follows -- is in its sys.argv."),
        QStringLiteral("FILE.py"));
    const QCommandLineOption stay(QStringLiteral("keep-open"),
                                  QCoreApplication::translate("main", "Stay when the script has ended."));
    parser.addOptions({script, stay});
    const QStringList all = QCoreApplication::arguments();
    const int end = all.indexOf(QStringLiteral("--"));
    const QStringList own = all.mid(0, end);
    if (end >= 0 && parser.parse(own) && parser.isSet(script)) {
        _arguments = all.mid(end + 1);
        parser.process(own);
    } else {
        parser.process(all);
    }
    _file = parser.value(script);
    _keepsOpen = parser.isSet(stay);
}
