// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Settings.h"

#include <QSettings>

namespace {

QVariant value(const char *key, const QVariant &otherwise = {})
{
    return QSettings(QStringLiteral("kxAssets"), QStringLiteral("asset-manager")).value(QLatin1String(key), otherwise);
}

void setValue(const char *key, const QVariant &value)
{
    QSettings(QStringLiteral("kxAssets"), QStringLiteral("asset-manager")).setValue(QLatin1String(key), value);
}

constexpr int DefaultTileSize = 128;

} // namespace

QStringList Settings::libraries()
{
    return value("libraries").toStringList();
}

void Settings::setLibraries(const QStringList &paths)
{
    setValue("libraries", paths);
}

QStringList Settings::filledLibraries()
{
    return value("filledLibraries").toStringList();
}

void Settings::setFilled(const QString &library, bool isFilled)
{
    QStringList filled = filledLibraries();
    if (filled.contains(library) == isFilled)
        return;
    filled.removeAll(library);
    if (isFilled)
        filled.append(library);
    setValue("filledLibraries", filled);
}

QString Settings::folder()
{
    return value("folder").toString();
}

void Settings::setFolder(const QString &path)
{
    setValue("folder", path);
}

QStringList Settings::favourites()
{
    return value("favourites").toStringList();
}

void Settings::setFavourites(const QStringList &uuids)
{
    setValue("favourites", uuids);
}

QStringList Settings::recent()
{
    return value("recent").toStringList();
}

void Settings::addRecent(const QStringList &uuids)
{
    QStringList all = recent();
    for (const QString &uuid : uuids) {
        all.removeAll(uuid);
        all.append(uuid);
    }
    setValue("recent", QStringList(all.mid(qMax(0, all.size() - MaxRecent))));
}

int Settings::tileSize()
{
    return value("tileSize", DefaultTileSize).toInt();
}

void Settings::setTileSize(int size)
{
    setValue("tileSize", size);
}

QList<int> Settings::columnWidths()
{
    QList<int> widths;
    for (const QVariant &width : value("columnWidths").toList())
        widths.append(width.toInt());
    return widths;
}

void Settings::setColumnWidths(const QList<int> &widths)
{
    QVariantList values;
    for (const int width : widths)
        values.append(width);
    setValue("columnWidths", values);
}

bool Settings::showsLines()
{
    return value("showsLines", false).toBool();
}

void Settings::setShowsLines(bool shows)
{
    setValue("showsLines", shows);
}

QByteArray Settings::windowGeometry()
{
    return value("window/geometry").toByteArray();
}

QByteArray Settings::windowState()
{
    return value("window/state").toByteArray();
}

void Settings::setWindow(const QByteArray &geometry, const QByteArray &state)
{
    setValue("window/geometry", geometry);
    setValue("window/state", state);
}

bool Settings::isFirstStart()
{
    return !value("isWelcomed", false).toBool();
}

void Settings::setWelcomed()
{
    setValue("isWelcomed", true);
}
