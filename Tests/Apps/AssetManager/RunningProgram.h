// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Support/TemporaryFolder.h"

#include <QImage>
#include <QProcess>
#include <QRect>
#include <QSettings>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

struct xcb_connection_t;

/// The program as a person starts it, on the X server of the tests, with a home of its own in which settings and data stay
/// from one start to the next.
class RunningProgram
{
public:
    explicit RunningProgram(const kxtest::TemporaryFolder &folder);
    /// Kills it where it still runs.
    ~RunningProgram();
    RunningProgram(const RunningProgram &) = delete;
    RunningProgram &operator=(const RunningProgram &) = delete;

    /// From \a folder, for instance below a prefix, instead of the one with the tests.
    void setFolder(const QString &folder) { _programs = folder; }
    void start(const QStringList &arguments);
    bool isRunning() { return _process.state() != QProcess::NotRunning; }
    /// Waits until it has ended, and answers its exit code; -1: it has not, or crashed.
    int waitForEnd();
    QByteArray errors() { return _process.readAllStandardError(); }

    /// Where the window is seen whose title holds \a title; nothing as long as there is none.
    std::optional<QRect> window(const QString &title);
    /// Waits for it.
    std::optional<QRect> waitForWindow(const QString &title);
    /// The largest picture that it gave the desktop of itself.
    QImage icon(const QString &title);
    /// As by the button in its frame.
    void close(const QString &title);

    /// What it keeps at the moment.
    QVariant setting(const char *key) const;
    QString home(const QString &relative) const;

private:
    unsigned find(const QString &title);
    unsigned atom(const char *name);
    std::vector<std::uint32_t> property(unsigned window, const char *name);
    QString titleOf(unsigned window);

    const kxtest::TemporaryFolder &_folder;
    QString _programs;
    QProcess _process;
    xcb_connection_t *_connection;
    unsigned _root = 0;
};
