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
    if (_messages.size() > MaxShownMessages) {
        shown.append(tr("... and %n more.", nullptr, _messages.size() - MaxShownMessages));
        setDetailedText(_messages.join('\n'));
    }
    setText(shown.join(QStringLiteral("\n\n")));
    show();
}
