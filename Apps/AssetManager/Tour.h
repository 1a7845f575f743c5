// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPointer>
#include <QWidget>

#include <vector>

class QLabel;
class QPushButton;

/// Leads around the window: darkens it but for one part, and says what that is for. Deletes itself at its end.
class Tour final : public QWidget
{
    Q_OBJECT

public:
    /// Covers the window. Parts that are hidden are passed over.
    explicit Tour(QWidget &window);
    ~Tour() override;

    /// From 0 on; -1 when it has ended.
    int station() const { return _station; }
    void next();

private:
    struct Station
    {
        QPointer<QWidget> part;
        QString text;
    };

    void add(const char *name, const QString &text);
    void show(int station);
    QRect shownPart() const;
    QPoint placeOfCard() const;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    QWidget &_window;
    std::vector<Station> _stations;
    int _station = -1;
    QWidget *_card;
    QLabel *_text;
    QPushButton *_next;
};
