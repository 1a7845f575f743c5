// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

#include <functional>

namespace kxKernelInternal {

/// Carries an update out at once or on the next pass of the event loop, and holds it back while it is switched off.
///
/// Many requests in one pass become one update. The switch is a flag, not a counter: the last call wins.
class UpdateGate : public QObject
{
    Q_OBJECT

public:
    explicit UpdateGate(std::function<void()> update, QObject *parent = nullptr);
    ~UpdateGate() override;

    bool isEnabled() const { return _enabled; }

    /// A request that came while the gate was closed is carried out on the next pass after it opens.
    void enable(bool enabled);

    void requestNow();
    void requestLater();

private:
    enum class Request { None, HeldBack, Scheduled };

    void deliver();

    std::function<void()> _update;
    bool _enabled = true;
    Request _request = Request::None;
};

} // namespace kxKernelInternal
