// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <memory>

class MainWindow;
class QDialog;

/// Takes a picture of the window once nothing happens in it any more, and ends the program.
class Screenshot final : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        QString file;
        QString
            view; ///< "tiles" or "list"; "assets", a panel or a dialog: that alone is taken; empty: the window as it opens
        QString asset; ///< the name of an asset to select, with what the scene has of it
    };

    /// What may be shown.
    static QStringList views();

    /// The window owns it. The program ends with \a exitCode, unless that is 0 and the picture cannot be taken.
    Screenshot(MainWindow &window, Options options, int exitCode);
    ~Screenshot() override;

private:
    void look();
    void prepare();
    void show();
    void select();
    std::unique_ptr<QDialog> makeDialog() const;
    bool take() const;

    MainWindow &_window;
    Options _options;
    int _exitCode;
    QTimer _timer;
    int _calmLooks = 0;
    bool _isPrepared = false;
};
