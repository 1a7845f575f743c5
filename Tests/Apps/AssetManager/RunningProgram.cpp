// SPDX-License-Identifier: Apache-2.0
#include "RunningProgram.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <QTest>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int Patience = 120000;              // milliseconds: the machine may be slow
constexpr std::uint32_t MostWords = 1U << 20; // of a property

template <class Reply> std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}

} // namespace

RunningProgram::RunningProgram(const kxtest::TemporaryFolder &folder)
    : _folder(folder), _programs(QCoreApplication::applicationDirPath()), _connection(xcb_connect(nullptr, nullptr))
{
    _root = xcb_setup_roots_iterator(xcb_get_setup(_connection)).data->root;
}

RunningProgram::~RunningProgram()
{
    if (isRunning()) {
        _process.kill();
        _process.waitForFinished();
    }
    xcb_disconnect(_connection);
}

QString RunningProgram::home(const QString &relative) const
{
    return QString::fromStdString(_folder.file("home")) + '/' + relative;
}

void RunningProgram::start(const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home({}));
    environment.insert("XDG_CONFIG_HOME", home("config"));
    environment.insert("XDG_DATA_HOME", home("data"));
    _process.setProcessEnvironment(environment);
    _process.setWorkingDirectory(QString::fromStdString(_folder.makeFolder("home")));
    _process.start(_programs + "/asset-manager", QStringList{"--language", "en"} + arguments);
    EXPECT_TRUE(_process.waitForStarted(Patience)) << _process.errorString().toStdString();
}

int RunningProgram::waitForEnd()
{
    const bool hasEnded = QTest::qWaitFor([this] { return !isRunning(); }, Patience);
    return hasEnded && _process.exitStatus() == QProcess::NormalExit ? _process.exitCode() : -1;
}

unsigned RunningProgram::atom(const char *name)
{
    const auto asked = xcb_intern_atom(_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    return owned(xcb_intern_atom_reply(_connection, asked, nullptr))->atom;
}

std::vector<std::uint32_t> RunningProgram::property(unsigned window, const char *name)
{
    const auto asked = xcb_get_property(_connection, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, MostWords);
    const auto reply = owned(xcb_get_property_reply(_connection, asked, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *first = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

QString RunningProgram::titleOf(unsigned window)
{
    const auto asked =
        xcb_get_property(_connection, 0, window, atom("_NET_WM_NAME"), XCB_GET_PROPERTY_TYPE_ANY, 0, MostWords);
    const auto reply = owned(xcb_get_property_reply(_connection, asked, nullptr));
    if (!reply)
        return {};
    return QString::fromUtf8(static_cast<const char *>(xcb_get_property_value(reply.get())),
                             xcb_get_property_value_length(reply.get()));
}

/// Without a window manager all windows are the root's children.
unsigned RunningProgram::find(const QString &title)
{
    const auto tree = owned(xcb_query_tree_reply(_connection, xcb_query_tree(_connection, _root), nullptr));
    const xcb_window_t *children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const auto asked = xcb_get_window_attributes(_connection, children[i]);
        const auto attributes = owned(xcb_get_window_attributes_reply(_connection, asked, nullptr));
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE && titleOf(children[i]).contains(title))
            return children[i];
    }
    return XCB_WINDOW_NONE;
}

std::optional<QRect> RunningProgram::window(const QString &title)
{
    const unsigned found = find(title);
    const auto asked = xcb_get_geometry(_connection, found);
    const auto geometry = owned(xcb_get_geometry_reply(_connection, asked, nullptr));
    if (found == XCB_WINDOW_NONE || !geometry)
        return {};
    return QRect(geometry->x, geometry->y, geometry->width, geometry->height);
}

std::optional<QRect> RunningProgram::waitForWindow(const QString &title)
{
    std::optional<QRect> found;
    EXPECT_TRUE(QTest::qWaitFor([&] { return (found = window(title)) || !isRunning(); }, Patience));
    EXPECT_TRUE(found) << title.toStdString() << ": " << errors().toStdString();
    return found;
}

QImage RunningProgram::icon(const QString &title)
{
    const std::vector<std::uint32_t> words = property(find(title), "_NET_WM_ICON");
    QImage largest;
    for (std::size_t at = 0; at + 2 < words.size();) {
        const std::size_t size = std::size_t(words[at]) * words[at + 1];
        if (size == 0 || at + 2 + size > words.size())
            break;
        const QImage picture(reinterpret_cast<const uchar *>(&words[at + 2]), static_cast<int>(words[at]),
                             static_cast<int>(words[at + 1]), QImage::Format_ARGB32);
        if (picture.width() > largest.width())
            largest = picture.copy();
        at += 2 + size;
    }
    return largest;
}

void RunningProgram::close(const QString &title)
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = find(title);
    message.type = atom("WM_PROTOCOLS");
    message.data.data32[0] = atom("WM_DELETE_WINDOW");
    xcb_send_event(_connection, 0, message.window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&message));
    xcb_flush(_connection);
}

QVariant RunningProgram::setting(const char *key) const
{
    return QSettings(home("config/kxAssets/asset-manager.conf"), QSettings::IniFormat).value(QLatin1String(key));
}
