// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MainWindow.h"

MainWindow::MainWindow() = default;
MainWindow::~MainWindow() = default;
