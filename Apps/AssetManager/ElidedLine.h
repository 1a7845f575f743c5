// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLineEdit>

/// A text to be read and copied, which dots shorten where it finds no room; with the focus it is whole.
class ElidedLine final : public QLineEdit
{
    Q_OBJECT

public:
    explicit ElidedLine(QWidget *parent = nullptr);
    ~ElidedLine() override;

    const QString &wholeText() const { return _whole; }
    void setWholeText(const QString &text);

private:
    void showWhatFits();
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

    QString _whole;
};
