// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

/// Decoding of pictures of the net. On any thread.
namespace tavelo::PosterImage {

/// A poster is a hundredth of that.
inline constexpr qint64 maxBytes = 4LL * 1024 * 1024;
/// More pixels than this are not decoded, whatever the file's size.
inline constexpr qint64 maxPixels = 16'000'000;

/// The middle of the picture, scaled to fill `size` (an empty one leaves it as it is), with its
/// corners rounded. Null for what is no JPEG, PNG, GIF or WebP, is broken or declares too many
/// pixels.
QImage decode(const QByteArray &bytes, QSize size, int radius);

} // namespace tavelo::PosterImage
