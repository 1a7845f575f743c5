// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/FilmPicture.h"

#include "Rendering/Internal/Cores.h"

namespace kxRender {

QImage pictureOf(const Film &film, float exposure)
{
    QImage picture(film.width(), film.height(), QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull())
        return picture;
    // The rows' addresses are taken from one pointer: scanLine() looks whether the picture is shared, on each call.
    uchar *first = picture.bits();
    const qsizetype stride = picture.bytesPerLine();
    Cores::forEach(film.height(), [&](int y) {
        auto *row = reinterpret_cast<QRgb *>(first + (film.height() - 1 - y) * stride);
        for (int x = 0; x < film.width(); ++x) {
            const auto [red, green, blue, alpha] = film.developed(x, y, exposure);
            row[x] = qPremultiply(qRgba(red, green, blue, alpha));
        }
    });
    return picture;
}

} // namespace kxRender
