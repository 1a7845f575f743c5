// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPlainTextEdit>
#include <QStringList>

#include <functional>

/// Where statements are typed: one line at first, as high as what is typed or pasted. Keeps what was entered before.
///
/// Return enters what is complete and begins another line otherwise; Shift+Return always begins one. Up and Down go through
/// what was entered before, Tab completes, and leaves the line where it is empty.
class ScriptLine final : public QPlainTextEdit
{
    Q_OBJECT

public:
    struct Language
    {
        std::function<bool(const QString &)> isComplete;
        std::function<QStringList(const QString &)> completions; ///< of a line up to the cursor
    };

    explicit ScriptLine(Language language, QWidget *parent = nullptr);
    ~ScriptLine() override;

Q_SIGNALS:
    void entered(const QString &text);
    /// What Tab found, where it is several.
    void offered(const QStringList &words);

private:
    void keyPressEvent(QKeyEvent *event) override;
    void enter();
    void complete();
    void leave(bool isForward);
    bool recall(int direction);
    void fitHeight();

    Language _language;
    QStringList _former;
    QString _unfinished; ///< what was typed before the history was entered
    int _place = 0;      ///< in the history; behind it for what is being typed
};
