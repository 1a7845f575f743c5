// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FailureBox.h"

namespace {

constexpr int MaxShownMessages = 6;

} // namespace

FailureBox::FailureBox(QWidget *parent) : QMessageBox(Warning, tr("Asset Manager"), {}, Close, parent)
{
    setObjectName(QStringLiteral("failures"));
    setModal(false);
    setTextFormat(Qt::PlainText);
}

void FailureBox::add(const QStringList &messages)
{
    if (!isVisible())
        _messages.clear();
    _messages += messages;
    _messages.removeDuplicates();
    QStringList shown = _messages.mid(0, MaxShownMessages);
    const int more = _messages.size() - MaxShownMessages;
    if (more > 0)
        shown.append(tr("... and %n more.", nullptr, more));
    setDetailedText(more > 0 ? _messages.join('\n') : QString());
    setText(shown.join(QStringLiteral("\n\n")));
    show();
}
