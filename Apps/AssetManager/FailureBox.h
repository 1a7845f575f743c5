// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMessageBox>

/// Shows sentences about what went wrong, without waiting for a person.
class FailureBox final : public QMessageBox
{
    Q_OBJECT

public:
    explicit FailureBox(QWidget *parent);

    /// Shows these, below those that are shown already.
    void add(const QStringList &messages);

private:
    QStringList _messages;
};
