// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QStringList>

#include <utility>
#include <vector>

class ImportJob;
class LibrarySide;
class QWidget;

/// Brings files into the libraries, and asks in the window what they are to become. Main thread only.
class FileImports final : public QObject
{
    Q_OBJECT

public:
    /// The window owns it. The libraries are used until then.
    FileImports(LibrarySide &libraries, QWidget &window);

    /// Files that a person chooses.
    void choose(const QString &folder);
    /// What comes while another import is under way, as by a drop from elsewhere, waits for its end.
    void importFiles(const QStringList &files, const QString &folder);

Q_SIGNALS:
    /// Sentences for people.
    void succeeded(const QString &message);
    void failed(const QStringList &messages);

private:
    void importNow(const QStringList &files, const QString &folder);
    /// What failed of it.
    QStringList run(ImportJob &job, const QStringList &files, const QString &folder);

    LibrarySide &_libraries;
    QWidget &_window;
    bool _isBusy = false;
    std::vector<std::pair<QStringList, QString>> _waiting; ///< files and folders, in their order
};
