// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// Texts for people.
namespace tavelo::Fmt {

/// A clock text: "0:07", "59:59", "25:01:01". Negative or not finite: "0:00".
QString time(double seconds);

/// Plain text from the catalogue's descriptions, which hold HTML tags and entities. Absent when
/// nothing is left.
std::optional<QString> stripHTML(const std::optional<QString> &text);

/// A file's size in decimal units: "1.2 GB". Absent or negative: "—".
QString byteCount(std::optional<qint64> bytes);

} // namespace tavelo::Fmt
