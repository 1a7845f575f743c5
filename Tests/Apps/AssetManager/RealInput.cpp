// SPDX-License-Identifier: Apache-2.0
#include "RealInput.h"

#include <QApplication>
#include <QCursor>
#include <QDeadlineTimer>
#include <QTimer>

#include <gtest/gtest.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <cstdlib>
#include <map>

namespace {

constexpr int Patience = 30000; // milliseconds
constexpr unsigned MarkType = XCB_ATOM_NOTICE;
constexpr unsigned char FakeInput = 2; // in the extension XTEST

xcb_extension_t testExtension = {"XTEST", 0};

/// As the extension's protocol lays it out.
struct FakeInputRequest
{
    std::uint8_t major = 0;
    std::uint8_t minor = 0;
    std::uint16_t length = 0;
    std::uint8_t type = 0;
    std::uint8_t detail = 0;
    std::uint16_t unused = 0;
    std::uint32_t delay = 0;
    std::uint32_t root = 0;
    std::uint32_t unused2[2] = {};
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::uint8_t unused3[8] = {};
};
static_assert(sizeof(FakeInputRequest) == 36);

/// X's own numbers of keys that are no letters.
unsigned symbolOf(Qt::Key key)
{
    static const std::map<int, unsigned> symbols = {
        {Qt::Key_Backspace, 0xff08}, {Qt::Key_Tab, 0xff09},    {Qt::Key_Backtab, 0xff09}, {Qt::Key_Return, 0xff0d},
        {Qt::Key_Escape, 0xff1b},    {Qt::Key_Home, 0xff50},   {Qt::Key_Left, 0xff51},    {Qt::Key_Up, 0xff52},
        {Qt::Key_Right, 0xff53},     {Qt::Key_Down, 0xff54},   {Qt::Key_PageUp, 0xff55},  {Qt::Key_PageDown, 0xff56},
        {Qt::Key_End, 0xff57},       {Qt::Key_Insert, 0xff63}, {Qt::Key_Menu, 0xff67},    {Qt::Key_Shift, 0xffe1},
        {Qt::Key_Control, 0xffe3},   {Qt::Key_Alt, 0xffe9},    {Qt::Key_Delete, 0xffff},  {Qt::Key_Enter, 0xff8d},
    };
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return 0xffbeU + static_cast<unsigned>(key - Qt::Key_F1);
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return static_cast<unsigned>('a' + key - Qt::Key_A);
    const auto found = symbols.find(key);
    return found != symbols.end() ? found->second : static_cast<unsigned>(key); // those of Latin-1 are the same
}

/// Two clicks of a test are two, however fast they follow each other.
class SingleClicks
{
public:
    SingleClicks() { QApplication::setDoubleClickInterval(0); }
    ~SingleClicks() { QApplication::setDoubleClickInterval(_before); }
    SingleClicks(const SingleClicks &) = delete;
    SingleClicks &operator=(const SingleClicks &) = delete;

private:
    int _before = QApplication::doubleClickInterval();
};

} // namespace

RealInput::RealInput() : _connection(xcb_connect(nullptr, nullptr))
{
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(_connection, &testExtension);
    EXPECT_TRUE(extension && extension->present) << "the X server takes no input from tests";
    const xcb_setup_t *setup = xcb_get_setup(_connection);
    _root = xcb_setup_roots_iterator(setup).data->root;
    _firstCode = setup->min_keycode;
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto asked = xcb_get_keyboard_mapping(_connection, _firstCode, count);
    const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, decltype(&std::free)> keys(
        xcb_get_keyboard_mapping_reply(_connection, asked, nullptr), &std::free);
    _columns = keys->keysyms_per_keycode;
    const xcb_keysym_t *first = xcb_get_keyboard_mapping_keysyms(keys.get());
    _symbols.assign(first, first + xcb_get_keyboard_mapping_keysyms_length(keys.get()));
    _marked.create();
    qApp->installNativeEventFilter(this);
}

RealInput::~RealInput()
{
    qApp->removeNativeEventFilter(this);
    xcb_disconnect(_connection);
}

void RealInput::click(const QPoint &place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    const SingleClicks single;
    perform({[=, this] {
                 fakeMove(place);
                 fakeModifiers(modifiers, true);
             },
             [=, this] { fakeButton(button, true); },
             [=, this] {
                 fakeButton(button, false);
                 fakeModifiers(modifiers, false);
             }});
}

void RealInput::doubleClick(const QPoint &place)
{
    click(place, Qt::LeftButton, Qt::NoModifier);
    const SingleClicks before;                      // afterwards
    QApplication::setDoubleClickInterval(Patience); // the machine may be slow
    perform({[=, this] { fakeButton(Qt::LeftButton, true); }, [=, this] { fakeButton(Qt::LeftButton, false); }});
}

void RealInput::moveTo(const QPoint &place)
{
    perform({[=, this] { fakeMove(place); }});
}

void RealInput::drag(const std::vector<QPoint> &places, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    const SingleClicks single;
    std::vector<Step> steps = pressAndMove(places, button, modifiers);
    steps.emplace_back([=, this] {
        fakeButton(button, false);
        fakeModifiers(modifiers, false);
    });
    perform(std::move(steps));
}

void RealInput::hold(const QPoint &place)
{
    const SingleClicks single;
    perform({[=, this] { fakeMove(place); }, [this] { fakeButton(Qt::LeftButton, true); }});
}

void RealInput::letGo()
{
    perform({[this] { fakeButton(Qt::LeftButton, false); }});
}

void RealInput::dragAndEscape(const std::vector<QPoint> &places)
{
    const SingleClicks single;
    std::vector<Step> steps = pressAndMove(places, Qt::LeftButton, Qt::NoModifier);
    steps.emplace_back([this] { fakeStroke(strokeOf(symbolOf(Qt::Key_Escape)), Qt::NoModifier); });
    steps.emplace_back([this] { fakeButton(Qt::LeftButton, false); });
    perform(std::move(steps));
}

void RealInput::dragAndDo(const std::vector<QPoint> &places, const std::function<void()> &meanwhile)
{
    const SingleClicks single;
    std::vector<Step> steps = pressAndMove(places, Qt::LeftButton, Qt::NoModifier);
    steps.emplace_back(meanwhile);
    steps.emplace_back([this] { fakeButton(Qt::LeftButton, false); });
    perform(std::move(steps));
}

std::vector<RealInput::Step> RealInput::pressAndMove(const std::vector<QPoint> &places, Qt::MouseButton button,
                                                     Qt::KeyboardModifiers modifiers) const
{
    std::vector<Step> steps = {[=, this] { fakeMove(places.front()); },
                               [=, this] {
                                   fakeModifiers(modifiers, true);
                                   fakeButton(button, true);
                               }};
    for (const QPoint &place : places)
        steps.emplace_back([=, this] { fakeMove(place); });
    return steps;
}

void RealInput::turnWheel(const QPoint &place, int notches, Qt::KeyboardModifiers modifiers)
{
    perform({[=, this] {
        fakeMove(place);
        fakeModifiers(modifiers, true);
        for (int i = 0; i < std::abs(notches); ++i) {
            const unsigned wheel = notches > 0 ? 4 : 5; // X has buttons for it
            fake(XCB_BUTTON_PRESS, wheel);
            fake(XCB_BUTTON_RELEASE, wheel);
        }
        fakeModifiers(modifiers, false);
    }});
}

void RealInput::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    const Stroke stroke = strokeOf(symbolOf(key));
    ASSERT_NE(stroke.code, 0) << "no such key: " << key;
    if (key == Qt::Key_Backtab)
        modifiers |= Qt::ShiftModifier;
    perform({[=, this] { fakeStroke(stroke, modifiers); }});
}

void RealInput::pressEscapeNow()
{
    fakeStroke(strokeOf(symbolOf(Qt::Key_Escape)), Qt::NoModifier);
    xcb_flush(_connection);
}

void RealInput::holdKey(Qt::Key key)
{
    perform({[=, this] {
        repeatKeys(XCB_AUTO_REPEAT_MODE_OFF);
        fake(XCB_KEY_PRESS, strokeOf(symbolOf(key)).code);
    }});
}

void RealInput::letGoKey(Qt::Key key)
{
    perform({[=, this] {
        fake(XCB_KEY_RELEASE, strokeOf(symbolOf(key)).code);
        repeatKeys(XCB_AUTO_REPEAT_MODE_DEFAULT);
    }});
}

void RealInput::repeatKeys(unsigned mode) const
{
    xcb_change_keyboard_control(_connection, XCB_KB_AUTO_REPEAT_MODE, &mode);
}

bool RealInput::type(const QString &text)
{
    std::vector<Step> steps;
    for (const QChar letter : text) {
        const Stroke stroke = strokeOf(letter.unicode());
        if (stroke.code == 0)
            return false;
        steps.emplace_back([=, this] { fakeStroke(stroke, Qt::NoModifier); });
    }
    perform(std::move(steps));
    return true;
}

void RealInput::perform(std::vector<Step> steps)
{
    ASSERT_TRUE(_isDone) << "one person has two hands, but types and clicks after each other";
    _steps = std::move(steps);
    _next = 0;
    _rounds = 0;
    _isDone = false;
    goOn();
    waitUntilDone();
}

/// Without the pauses of QTest::qWaitFor(), of which one for each step would be most of the time that tests take.
void RealInput::waitUntilDone()
{
    const QDeadlineTimer patience(Patience);
    QTimer reminder; // nothing else may wake the loop
    reminder.start(Patience / 10);
    while (!_isDone && !patience.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_TRUE(_isDone) << "the program does not go on";
    _isDone = true;
}

/// What a step led to may have sent something to the program itself by way of the server, as drags do when they ask where they
/// may be dropped, and when they hear of it: that is waited for as well.
void RealInput::goOn()
{
    if (_rounds > 0) {
        --_rounds;
        QCursor::pos(); // the server answers that after it has got all that the program sent
        mark();
    } else if (_next == _steps.size()) {
        _isDone = true;
    } else {
        const Step step = _steps[_next++];
        step();
        _rounds = 2;
        mark();
    }
}

void RealInput::fake(unsigned type, unsigned detail, const QPoint &place) const
{
    FakeInputRequest request;
    request.type = static_cast<std::uint8_t>(type);
    request.detail = static_cast<std::uint8_t>(detail);
    request.root = type == XCB_MOTION_NOTIFY ? _root : XCB_NONE;
    request.x = static_cast<std::int16_t>(place.x());
    request.y = static_cast<std::int16_t>(place.y());
    const xcb_protocol_request_t protocol = {2, &testExtension, FakeInput, 1};
    iovec parts[4] = {};
    parts[2].iov_base = &request; // the two before it belong to xcb
    parts[2].iov_len = sizeof(request);
    parts[3].iov_len = 0;
    xcb_send_request(_connection, 0, parts + 2, &protocol);
}

void RealInput::fakeMove(const QPoint &place) const
{
    fake(XCB_MOTION_NOTIFY, 0, place);
}

void RealInput::fakeButton(Qt::MouseButton button, bool isDown) const
{
    const unsigned number = button == Qt::LeftButton ? 1 : button == Qt::MiddleButton ? 2 : 3;
    fake(isDown ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, number);
}

void RealInput::fakeModifiers(Qt::KeyboardModifiers modifiers, bool isDown) const
{
    const std::pair<Qt::KeyboardModifier, Qt::Key> keys[] = {
        {Qt::ShiftModifier, Qt::Key_Shift}, {Qt::ControlModifier, Qt::Key_Control}, {Qt::AltModifier, Qt::Key_Alt}};
    for (const auto &[modifier, key] : keys)
        if (modifiers.testFlag(modifier))
            fake(isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, strokeOf(symbolOf(key)).code);
}

void RealInput::fakeStroke(const Stroke &stroke, Qt::KeyboardModifiers modifiers) const
{
    if (stroke.isShifted)
        modifiers |= Qt::ShiftModifier;
    fakeModifiers(modifiers, true);
    fake(XCB_KEY_PRESS, stroke.code);
    fake(XCB_KEY_RELEASE, stroke.code);
    fakeModifiers(modifiers, false);
}

/// A message that the server passes on after everything that came before.
void RealInput::mark() const
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(_marked.winId());
    message.type = MarkType;
    xcb_send_event(_connection, 0, message.window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&message));
    xcb_flush(_connection);
}

RealInput::Stroke RealInput::strokeOf(unsigned symbol) const
{
    const auto columns = static_cast<std::size_t>(_columns);
    for (std::size_t column = 0; column < 2; ++column)
        for (std::size_t i = column; i < _symbols.size(); i += columns)
            if (_symbols[i] == symbol)
                return {static_cast<unsigned char>(_firstCode + i / columns), column == 1};
    return {};
}

bool RealInput::nativeEventFilter(const QByteArray & /*type*/, void *message, long * /*result*/)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7fU) != XCB_CLIENT_MESSAGE)
        return false;
    const auto *client = reinterpret_cast<const xcb_client_message_event_t *>(event);
    if (client->type != MarkType || client->window != _marked.winId())
        return false;
    // Later: Qt handles input after the messages that came with it.
    QTimer::singleShot(0, &_marked, [this] { goOn(); });
    return true;
}
