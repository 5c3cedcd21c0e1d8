// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/IconProvider.h"

#include <QPainter>
#include <QSvgRenderer>

namespace tavelo {

namespace {

constexpr QSize drawnSize(24, 24);

QImage drawn(const QString &symbol, const QSize &size, const QColor &colour)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer svg(QStringLiteral(":/qt/qml/Tavelo/icons/%1.svg").arg(symbol));
    if (!svg.isValid())
        return image;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    svg.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
    return image;
}

} // namespace

IconProvider::IconProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{}

QImage IconProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const qsizetype slash = id.lastIndexOf(QLatin1Char('/'));
    const QColor colour(QLatin1Char('#') + id.mid(slash + 1));
    if (size)
        *size = drawnSize;
    return drawn(id.left(slash), requestedSize.isEmpty() ? drawnSize : requestedSize, colour);
}

} // namespace tavelo
