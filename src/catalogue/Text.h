// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace tavelo::Text {

/// The part of it without spaces (of any width) and tabs at both ends; line breaks stay.
QStringView trimmedOfBlanks(QStringView text);

/// A decimal integer with an optional sign and nothing else; absent when it is not, or does not
/// fit.
std::optional<qint64> integer(QStringView text);

/// A text that is a URL as it stands (RFC 3986, and characters beyond ASCII), of any scheme or
/// none; absent for any other.
std::optional<QUrl> url(const QString &text);

/// Its first 65,536 characters: no name needs more.
QString bounded(const QString &text);

/// Percent-encoded for a URL's path (RFC 3986, pchar without ";", and "/"). A text that has no
/// UTF-8 form comes back as it is.
QString pathEncoded(const QString &text);

} // namespace tavelo::Text
