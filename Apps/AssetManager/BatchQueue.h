// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/BatchProgress.h"

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

/// Has what is done to many assets done one after the other: what is asked for while events are handled within one waits for
/// its end. Main thread only.
class BatchQueue final : public QObject
{
    Q_OBJECT

public:
    explicit BatchQueue(QObject *parent = nullptr);
    ~BatchQueue() override;

    bool isBusy() const { return _progress != nullptr; }
    /// Whether something goes on, and \a action will be carried out after it.
    bool waits(std::function<void()> action);
    void begin(const QString &text, int total);
    void begin(const QString &text, int total, const BatchProgress::Look &look);
    /// Between begin() and end(), before each of the many: whether it is to be done.
    bool goesOn() { return _progress->goesOn(); }
    /// Whether all was done that was asked for.
    bool end();

    /// How many milliseconds go by before something that goes on shows its progress.
    void setPatience(int patience) { _look.patience = patience; }

private:
    void doWaiting();

    BatchProgress::Look _look;
    std::unique_ptr<BatchProgress> _progress; ///< while something goes on
    std::vector<std::function<void()>> _waiting;
};
