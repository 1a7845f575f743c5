// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxIconManager.h"

#include "Kernel/kxLog.h"

#include <QGuiApplication>
#include <QImageReader>

#include <map>
#include <utility>

namespace {

using IconKey = std::pair<QString, int>;

std::map<IconKey, QPixmap> &cache()
{
    // Emptied before the application object goes, because pixmaps must not outlive it.
    static std::map<IconKey, QPixmap> icons;
    static const bool registered = [] {
        qAddPostRoutine([] { icons.clear(); });
        return true;
    }();
    static_cast<void>(registered);
    return icons;
}

QPixmap load(const QString &name, int size)
{
    QImageReader reader(QStringLiteral(":/kxKernel/icons/") + name);
    if (size > 0)
        reader.setScaledSize(reader.size().scaled(size, size, Qt::KeepAspectRatio));
    const QImage image = reader.read();
    if (image.isNull())
        kxLog::error("Failed to load the icon '%s': %s.", name.toUtf8().constData(),
                     reader.errorString().toUtf8().constData());
    return QPixmap::fromImage(image);
}

} // namespace

QPixmap kxIconManager::get(const QString &name, int size)
{
    const IconKey key(name, size);
    const auto found = cache().find(key);
    if (found != cache().end())
        return found->second;
    return cache().emplace(key, load(name, size)).first->second;
}
