// SPDX-License-Identifier: Apache-2.0
#include "Python/Session.h"

#include "AssetSession/kxAssetSession.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxScenegraph.h"

#include <QApplication>

#include <array>
#include <memory>

namespace kxPython {

namespace {

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
    if (host() || kxScenegraph::getRoot())
        return;
    host() = std::make_unique<Host>();
    if (!QCoreApplication::instance()) {
        // A script must run where there is no display, and asks nobody.
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        host()->application = std::make_unique<QApplication>(host()->argumentCount, host()->arguments.data());
        kxModalQuestion::setMode(kxModalQuestion::Mode::Headless);
    }
    host()->session = std::make_unique<kxAssetSession>();
}

void Session::close()
{
    if (!host())
        return;
    host()->session.reset();
    host()->application.reset();
    host().reset();
}

} // namespace kxPython
