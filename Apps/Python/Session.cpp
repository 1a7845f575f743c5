// SPDX-License-Identifier: Apache-2.0
#include "Python/Session.h"

#include "AssetSession/kxAssetSession.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxModalQuestion.h"
#include "Python/LibraryCall.h"

#include <QApplication>

#include <array>
#include <memory>

namespace kxPython {

namespace {

/// What Qt has to say of its surroundings helps no script.
void logQtMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    if (type == QtFatalMsg || type == QtCriticalMsg)
        kxLog::error("%s", text.toUtf8().constData());
    else
        kxLog::debug("%s", text.toUtf8().constData());
}

struct Host
{
    int argumentCount = 1;
    std::array<char, 3> name{"kx"};
    std::array<char *, 2> arguments{name.data(), nullptr};
    std::unique_ptr<QApplication> application;
    std::unique_ptr<kxAssetSession> session;
};

std::unique_ptr<Host> &host()
{
    static std::unique_ptr<Host> own;
    return own;
}

} // namespace

void Session::ensure()
{
    if (host() || kxKernelServiceFactory::the().isKernelUp())
        return;
    host() = std::make_unique<Host>();
    if (!QCoreApplication::instance()) {
        // A script must run where there is no display, and asks nobody.
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(&logQtMessage);
        host()->application = std::make_unique<QApplication>(host()->argumentCount, host()->arguments.data());
        kxModalQuestion::setMode(kxModalQuestion::Mode::Headless);
    }
    host()->session = std::make_unique<kxAssetSession>();
}

void Session::close()
{
    if (!host())
        return;
    const LibraryCall call;
    host()->session.reset();
    host()->application.reset();
    host().reset();
}

} // namespace kxPython
