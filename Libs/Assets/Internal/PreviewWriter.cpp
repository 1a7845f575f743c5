// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/PreviewWriter.h"

#include <QFile>

namespace kxAssetsInternal {

void writePreview(const QString &basePath, const osg::ImagePtr &image, const std::vector<std::string> &formats,
                  int format)
{
    if (!image)
        return;
    const auto chosen = static_cast<std::size_t>(format);
    Q_ASSERT(chosen < formats.size());
    const auto pathWith = [&basePath](const std::string &extension) {
        return basePath + QLatin1Char('.') + QString::fromStdString(extension);
    };
    if (!image->write(pathWith(formats[chosen]).toStdString()))
        return;
    for (std::size_t i = 0; i < formats.size(); ++i)
        if (i != chosen && QFile::exists(pathWith(formats[i])))
            QFile::remove(pathWith(formats[i]));
}

} // namespace kxAssetsInternal
