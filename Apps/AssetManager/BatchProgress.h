// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>

#include <memory>

class QProgressDialog;
class QWidget;

/// How far something is that is done to many, with a way to stop it. It is seen once that takes long.
///
/// As long as it is seen, events are handled between one and the next of the many: the window is drawn, and takes no input but
/// to stop. Whatever was looked up before may be gone then.
class BatchProgress
{
    Q_DECLARE_TR_FUNCTIONS(BatchProgress)

public:
    struct Look
    {
        const char *name = "batchProgress";
        int patience = 400; ///< milliseconds that go by before it is seen
    };

    BatchProgress(const QString &text, int total, QWidget *window, const Look &look);
    ~BatchProgress();
    BatchProgress(const BatchProgress &) = delete;
    BatchProgress &operator=(const BatchProgress &) = delete;

    /// Whether there is to be a next one. To be asked before each of them.
    bool goesOn();
    bool isCanceled() const;

private:
    std::unique_ptr<QProgressDialog> _dialog; ///< null for one alone
    int _done = 0;
};
