// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMainWindow>

/// The window of the desktop Asset Manager.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;
};
