// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickImageProvider>

namespace tavelo {

/// "image://icon/<symbol>/<colour without its #>": a symbol of our set in one colour, drawn at the
/// size that is asked for. An unknown symbol is an empty picture.
class IconProvider : public QQuickImageProvider
{
public:
    IconProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace tavelo
