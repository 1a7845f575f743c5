// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QAbstractNativeEventFilter>
#include <QPoint>
#include <QString>
#include <QWindow>

#include <functional>
#include <memory>
#include <vector>

struct xcb_connection_t;

/// The mouse and the keyboard of the X server: what is done with them takes the way that a person's input takes, through the
/// server, to whatever window lies under the pointer or has the focus.
///
/// Every call returns when the program has handled the input, also where that began a loop of its own, such as that of a drag.
class RealInput final : private QAbstractNativeEventFilter
{
public:
    RealInput();
    ~RealInput() override;
    RealInput(const RealInput &) = delete;
    RealInput &operator=(const RealInput &) = delete;

    /// Places are those of the screen.
    void click(const QPoint &place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void doubleClick(const QPoint &place);
    void moveTo(const QPoint &place);
    /// Presses, moves over all of these, and lets go at the last one.
    void drag(const std::vector<QPoint> &places, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    /// The parts of a drag out of another program, for which nobody here can wait: presses the left button, and lets go.
    void hold(const QPoint &place);
    void letGo();
    /// Like drag(), but presses Escape before letting go.
    void dragAndEscape(const std::vector<QPoint> &places);
    /// Like drag(), but before letting go, and within the drag, this happens.
    void dragAndDo(const std::vector<QPoint> &places, const std::function<void()> &meanwhile);
    /// Turns the wheel by so many notches, away from the person where that is positive.
    void turnWheel(const QPoint &place, int notches, Qt::KeyboardModifiers modifiers);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers);
    /// The parts of a stroke; the server does not repeat it in between.
    void holdKey(Qt::Key key);
    void letGoKey(Qt::Key key);
    /// Presses Escape at once, in the middle of whatever goes on.
    void pressEscapeNow();
    /// Whether it still goes on; only a loop in which the program waits for something may ask.
    bool isBusy() const { return !_isDone; }
    /// Whether the keyboard has all the letters; otherwise nothing is typed.
    bool type(const QString &text);

private:
    using Step = std::function<void()>;

    struct Stroke
    {
        unsigned char code = 0; ///< 0: there is no such key
        bool isShifted = false;
    };

    /// Each in turn, once all that the former one led to is handled.
    void perform(std::vector<Step> steps);
    std::vector<Step> pressAndMove(const std::vector<QPoint> &places, Qt::MouseButton button,
                                   Qt::KeyboardModifiers modifiers) const;
    void waitUntilDone();
    void goOn();
    void fake(unsigned type, unsigned detail, const QPoint &place = {}) const;
    void fakeMove(const QPoint &place) const;
    void fakeButton(Qt::MouseButton button, bool isDown) const;
    void repeatKeys(unsigned mode) const;
    void fakeModifiers(Qt::KeyboardModifiers modifiers, bool isDown) const;
    void fakeStroke(const Stroke &stroke, Qt::KeyboardModifiers modifiers) const;
    void mark() const;
    Stroke strokeOf(unsigned symbol) const;
    bool nativeEventFilter(const QByteArray &type, void *message, long *result) override;

    xcb_connection_t *_connection;
    QWindow _marked; ///< receives what tells that everything before it has arrived
    unsigned _root = 0;
    unsigned char _firstCode = 0;
    int _columns = 0;
    std::vector<unsigned> _symbols; ///< of all keys, by columns: without and with Shift
    std::vector<Step> _steps;
    std::size_t _next = 0;
    int _rounds = 0; ///< how often marks still go around before the next step
    bool _isDone = true;
};
