// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/TagBar.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>

namespace {

constexpr int MaxButtons = 6; // more would keep the panels beside from being wide enough

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
    while (QLayoutItem *item = _layout->takeAt(0)) {
        if (item->widget())
            item->widget()->deleteLater();
        delete item; // NOLINT(cppcoreguidelines-owning-memory): a layout hands its items over
    }
    QStringList shown = _chosen;
    for (const QString &tag : _chosen)
        addButton(tag, -1);
    auto next = counts.begin();
    for (; next != counts.end() && shown.size() < MaxButtons; ++next)
        if (!shown.contains(next->first)) {
            addButton(next->first, next->second);
            shown.append(next->first);
        }
    if (next != counts.end()) {
        auto *more = new QToolButton(this);
        more->setText(tr("More tags"));
        more->setPopupMode(QToolButton::InstantPopup);
        auto *menu = new QMenu(more);
        for (; next != counts.end(); ++next)
            if (const QString tag = next->first; !shown.contains(tag))
                menu->addAction(QStringLiteral("%1 (%2)").arg(tag).arg(next->second), this,
                                [this, tag] { toggle(tag, true); });
        more->setMenu(menu);
        _layout->addWidget(more);
    }
    _layout->addStretch(1);
    setVisible(!shown.isEmpty());
}

void TagBar::addButton(const QString &tag, int count)
{
    auto *button = new QToolButton(this);
    button->setObjectName("tag:" + tag);
    button->setText(count < 0 ? tag : QStringLiteral("%1 (%2)").arg(tag).arg(count));
    button->setCheckable(true);
    button->setChecked(_chosen.contains(tag));
    button->setAutoRaise(!button->isChecked());
    button->setToolTip(tr("Show only assets with the tag \"%1\"").arg(tag));
    connect(button, &QToolButton::toggled, this, [this, tag](bool isChecked) { toggle(tag, isChecked); });
    _layout->addWidget(button);
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
