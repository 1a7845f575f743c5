// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

class QCommandLineParser;

/// What the command line says about a script that is run when the program starts.
class ScriptOptions
{
public:
    /// Declares the options, and has the parser process the program's arguments, which may end the program. Where there is a
    /// script, what stands behind "--" is the script's.
    explicit ScriptOptions(QCommandLineParser &parser);

    bool isSet() const { return !_file.isEmpty(); }
    const QString &file() const { return _file; }
    const QStringList &arguments() const { return _arguments; }
    /// Whether the program stays when the script has ended.
    bool keepsOpen() const { return _keepsOpen; }

private:
    QString _file;
    QStringList _arguments;
    bool _keepsOpen = false;
};
