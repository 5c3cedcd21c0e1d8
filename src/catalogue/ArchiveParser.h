// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ArchiveDetails.h"

#include <QByteArray>
#include <QJsonValue>

#include <optional>

/// The answers of the Internet Archive's catalogue: JSON whose fields may each be a text, a number
/// or a list of either. Total: whatever the bytes are, there is a result.
/// Of each text the first 65,536 characters are kept, of the subjects the first 100, of the nodes
/// the first 4.
namespace tavelo::ArchiveParser {

/// The text of a loosely typed value: the text itself, a number's decimal text, the first of a list
/// (of lists). Absent for anything else.
std::optional<QString> first(const QJsonValue &value);

/// The items of a page; empty when the page has no usable shape. Unusable documents are left out.
QList<MediaItem> parseSearch(const QByteArray &body);

/// Absent when the answer has no usable shape, as for an unknown identifier.
std::optional<ArchiveDetails> parseDetails(const QByteArray &body, const QString &id);

} // namespace tavelo::ArchiveParser
