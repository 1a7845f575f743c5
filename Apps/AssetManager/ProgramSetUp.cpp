// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ProgramSetUp.h"

#include "AssetManager/Language.h"

#include <QApplication>
#include <QLocale>

void ProgramSetUp::begin()
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::RoundPreferFloor);
}

void ProgramSetUp::introduce(const QStringList &arguments)
{
    QApplication::setApplicationName(QStringLiteral("asset-manager"));
    QApplication::setDesktopFileName(QStringLiteral("kxassets-asset-manager"));
    Language::install(Language::wanted(arguments));
}
