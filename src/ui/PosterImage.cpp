// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/PosterImage.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tavelo {

namespace {

bool isAcceptable(const QImageReader &reader)
{
    static const QByteArrayList formats{"jpeg", "png", "gif", "webp"};
    if (!formats.contains(reader.format())) // before its reader sees more of it
        return false;
    const QSize size = reader.size();
    return size.isValid() && qint64(size.width()) * size.height() <= PosterImage::maxPixels;
}

QImage rounded(const QImage &picture, QSize size, int radius)
{
    QImage result(size, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    QBrush brush(picture);
    brush.setTransform(QTransform::fromTranslate((size.width() - picture.width()) / 2,
                                                 (size.height() - picture.height()) / 2));
    painter.setBrush(brush);
    painter.drawRoundedRect(QRect({0, 0}, size), radius, radius);
    return result;
}

} // namespace

QImage PosterImage::decode(const QByteArray &bytes, QSize size, int radius)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!isAcceptable(reader))
        return {};
    if (size.isEmpty())
        return reader.read();

    // A picture that the file turns on its side is scaled as it lies in the file.
    const bool turned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize cover =
        reader.size().scaled(turned ? size.transposed() : size, Qt::KeepAspectRatioByExpanding);
    if (qint64(cover.width()) * cover.height() > maxPixels)
        return {};
    reader.setScaledSize(cover);
    const QImage picture = reader.read();
    return picture.isNull() ? picture : rounded(picture, size, radius);
}

} // namespace tavelo
