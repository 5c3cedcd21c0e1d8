// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

/// RenderIcon DRAWING.svg SIZE ICON.png: the drawing as an icon of that many pixels each way.
int main(int argc, char **argv)
{
    if (argc != 4)
        return 2;
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    const int size = QByteArray(argv[2]).toInt();
    QImage icon(size, size, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    drawing.render(&painter);
    painter.end();
    return drawing.isValid() && icon.save(QString::fromLocal8Bit(argv[3])) ? 0 : 1;
}
