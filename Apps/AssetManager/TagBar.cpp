// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/TagBar.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QResizeEvent>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr int MaxButtons = 6;      // more are no help
constexpr std::size_t InMenu = 30; // which a screen has room for

/// With how many assets have the tag; those are not counted where \a count is negative.
QString textOf(const QString &tag, int count)
{
    const QString text = QString(tag).replace('&', QLatin1String("&&")); // which marks letters otherwise
    return count < 0 ? text : QStringLiteral("%1 (%2)").arg(text).arg(count);
}

} // namespace

TagBar::TagBar(QWidget *parent) : QWidget(parent), _layout(new QHBoxLayout(this))
{
    setObjectName(QStringLiteral("tagBar"));
    setAccessibleName(tr("Filter by tags"));
    _layout->setContentsMargins(0, 0, 0, 0);
    _layout->setSpacing(4);
    hide();
}

void TagBar::setTags(const std::vector<std::pair<QString, int>> &counts)
{
    _counts = counts;
    arrange();
}

void TagBar::arrange()
{
    _isStale = _menu && _menu->isVisible(); // nothing is taken away under the pointer
    if (_isStale)
        return;
    while (QLayoutItem *item = _layout->takeAt(0)) {
        if (item->widget()) {
            item->widget()->setObjectName({}); // its successor has the name from now on
            item->widget()->hide();
            item->widget()->deleteLater();
        }
        delete item; // NOLINT(cppcoreguidelines-owning-memory): a layout hands its items over
    }
    auto *more = new QPushButton(tr("More tags"), this); // whose arrow stands beside the text
    auto *menu = new QMenu(more);
    more->setMenu(menu);
    _menu = menu;
    connect(menu, &QMenu::aboutToHide, this, &TagBar::catchUp, Qt::QueuedConnection); // after what was chosen in it
    int room = width() - more->sizeHint().width();
    QStringList shown;
    std::vector<std::pair<QString, int>> others;
    const auto show = [&](QToolButton *button, const QString &tag) {
        room -= button->sizeHint().width() + _layout->spacing();
        _layout->addWidget(button);
        shown.append(tag);
    };
    for (const QString &tag : _chosen)
        show(makeButton(tag, -1), tag);
    for (const auto &[tag, count] : _counts) {
        if (shown.contains(tag))
            continue;
        auto *button = others.empty() && shown.size() < MaxButtons ? makeButton(tag, count) : nullptr;
        if (button && button->sizeHint().width() + _layout->spacing() <= room) {
            show(button, tag);
            continue;
        }
        delete button; // NOLINT(cppcoreguidelines-owning-memory): it was made to be measured
        others.emplace_back(tag, count);
    }
    fill(*menu, std::move(others));
    more->setVisible(!menu->isEmpty());
    _layout->addWidget(more);
    _layout->addStretch(1);
    setVisible(!_chosen.isEmpty() || !_counts.empty());
}

/// The most frequent ones, and menus with the others by their names.
void TagBar::fill(QMenu &menu, std::vector<std::pair<QString, int>> tags)
{
    const auto add = [this](QMenu &to, const std::pair<QString, int> &counted) {
        to.addAction(textOf(counted.first, counted.second), this, [this, tag = counted.first] { toggle(tag, true); });
    };
    const std::size_t direct = std::min(tags.size(), InMenu);
    for (std::size_t i = 0; i < direct; ++i)
        add(menu, tags[i]);
    std::sort(tags.begin() + static_cast<std::ptrdiff_t>(direct), tags.end(),
              [](const auto &a, const auto &b) { return QString::localeAwareCompare(a.first, b.first) < 0; });
    for (std::size_t first = direct; first < tags.size(); first += InMenu) {
        const std::size_t last = std::min(first + InMenu, tags.size()) - 1;
        if (first == direct)
            menu.addSeparator();
        QMenu *some =
            menu.addMenu(textOf(tags[first].first, -1) + QStringLiteral(" – ") + textOf(tags[last].first, -1));
        for (std::size_t i = first; i <= last; ++i)
            add(*some, tags[i]);
    }
}

void TagBar::catchUp()
{
    if (_isStale)
        arrange();
}

QToolButton *TagBar::makeButton(const QString &tag, int count)
{
    auto *button = new QToolButton(this);
    button->setObjectName("tag:" + tag);
    button->setText(textOf(tag, count));
    button->setCheckable(true);
    button->setChecked(_chosen.contains(tag));
    button->setAutoRaise(!button->isChecked());
    button->setToolTip(tr("Show only assets with the tag \"%1\"").arg(tag));
    connect(button, &QToolButton::toggled, this, [this, tag](bool isChecked) { toggle(tag, isChecked); });
    return button;
}

QSize TagBar::minimumSizeHint() const
{
    return {0, QWidget::minimumSizeHint().height()};
}

void TagBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        arrange();
}

void TagBar::toggle(const QString &tag, bool isChosen)
{
    QStringList tags = _chosen;
    tags.removeAll(tag);
    if (isChosen)
        tags.append(tag);
    setChosen(tags);
}

void TagBar::setChosen(const QStringList &tags)
{
    if (tags == _chosen)
        return;
    _chosen = tags;
    emit chosenChanged(tags);
}
