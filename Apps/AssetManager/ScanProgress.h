// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

class LibraryScan;
class QLabel;

/// Says in the status bar what is being read, and stops it.
class ScanProgress final : public QWidget
{
    Q_OBJECT

public:
    explicit ScanProgress(LibraryScan &scan, QWidget *parent = nullptr);

private:
    QLabel *_text;
};
