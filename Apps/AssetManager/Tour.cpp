// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Tour.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int Gap = 12;
constexpr int CardWidth = 340;

} // namespace

Tour::Tour(QWidget &window) : QWidget(&window), _window(window)
{
    setObjectName(QStringLiteral("tour"));
    setAccessibleName(tr("Tour of the program"));
    setAttribute(Qt::WA_DeleteOnClose);
    setFocusPolicy(Qt::StrongFocus);
    _card = new QWidget(this);
    _card->setAutoFillBackground(true);
    _card->setFixedWidth(CardWidth);
    _text = new QLabel(_card);
    _text->setObjectName(QStringLiteral("tourText"));
    _text->setWordWrap(true);
    _next = new QPushButton(_card);
    _next->setObjectName(QStringLiteral("tourNext"));
    auto *close = new QPushButton(tr("Close"), _card);
    close->setObjectName(QStringLiteral("tourClose"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(close);
    buttons->addStretch(1);
    buttons->addWidget(_next);
    auto *layout = new QVBoxLayout(_card);
    layout->addWidget(_text);
    layout->addLayout(buttons);
    connect(_next, &QPushButton::clicked, this, &Tour::next);
    connect(close, &QPushButton::clicked, this, &QWidget::close);

    add("folderTree", tr("These are your libraries and their folders. Drag assets or folders onto a folder to move "
                         "them there, drag objects of the scene here to save them as assets, and drop files from "
                         "outside to import them."));
    add("assetBrowser", tr("Here are the assets of the chosen folder. Search as you type, narrow down by tags, and "
                           "change the size of the tiles with the slider. A mark on a tile tells how the asset stands "
                           "to the scene; point at it to read why."));
    add("sceneView", tr("This is the scene. Drag a material onto an object, or geometry, an environment or a plate "
                        "into the picture. Drag with the mouse to look around."));
    add("detailsPane", tr("The selected asset in detail: change its name and its tags here, of several at once too."));
    add("menuBar", tr("Everything can be undone with Ctrl+Z, also what was deleted: it goes to the trash of its "
                      "library first."));
    window.installEventFilter(this);
    setGeometry(window.rect());
    QWidget::show();
    raise();
    setFocus();
    next();
}

Tour::~Tour() = default;

void Tour::add(const char *name, const QString &text)
{
    _stations.push_back({_window.findChild<QWidget *>(QLatin1String(name)), text});
}

void Tour::next()
{
    int station = _station + 1;
    const auto count = static_cast<int>(_stations.size());
    while (station < count && (!_stations[static_cast<std::size_t>(station)].part ||
                               !_stations[static_cast<std::size_t>(station)].part->isVisible()))
        ++station;
    if (station < count) {
        show(station);
        return;
    }
    _station = -1;
    close();
}

QRect Tour::shownPart() const
{
    const QPointer<QWidget> &part = _stations[static_cast<std::size_t>(_station)].part;
    return part ? QRect(part->mapTo(&_window, QPoint(0, 0)), part->size()) : QRect();
}

/// Beside the part on the side with more room, else above or below it, else on it.
QPoint Tour::placeOfCard() const
{
    const QRect part = shownPart();
    const QSize card = _card->size();
    const bool isLeft = part.left() > width() - part.right();
    const bool isAbove = part.top() > height() - part.bottom();
    QPoint place = part.center() - QPoint(card.width(), card.height()) / 2;
    if ((isLeft ? part.left() : width() - part.right()) > card.width() + 2 * Gap)
        place.setX(isLeft ? part.left() - Gap - card.width() : part.right() + Gap);
    else if ((isAbove ? part.top() : height() - part.bottom()) > card.height() + 2 * Gap)
        place.setY(isAbove ? part.top() - Gap - card.height() : part.bottom() + Gap);
    return {std::clamp(place.x(), Gap, std::max(Gap, width() - card.width() - Gap)),
            std::clamp(place.y(), Gap, std::max(Gap, height() - card.height() - Gap))};
}

void Tour::show(int station)
{
    _station = station;
    _text->setText(_stations[static_cast<std::size_t>(station)].text);
    _next->setText(station + 1 == static_cast<int>(_stations.size()) ? tr("Done") : tr("Next"));
    _next->setAccessibleDescription(_text->text()); // which is read with the button that has the keyboard
    _card->setFixedHeight(_card->layout()->heightForWidth(CardWidth));
    _card->move(placeOfCard());
    _next->setFocus();
    update();
}

void Tour::paintEvent(QPaintEvent * /*event*/)
{
    if (_station < 0)
        return;
    QPainter painter(this);
    painter.setClipRegion(QRegion(rect()) - QRegion(shownPart()));
    painter.fillRect(rect(), QColor(0, 0, 0, 150));
    painter.setClipping(false);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(shownPart().adjusted(0, 0, -1, -1));
}

void Tour::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

bool Tour::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &_window && event->type() == QEvent::Resize) {
        setGeometry(_window.rect());
        if (_station >= 0)
            show(_station);
    }
    return QWidget::eventFilter(watched, event);
}
