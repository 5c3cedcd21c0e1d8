// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QStringList>
#include <QUrl>

#include <optional>

/// The requests of the Internet Archive's catalogue: its query language and its addresses.
namespace tavelo::ArchiveQuery {

/// The words of a free text: what is neither letter nor digit separates them.
QStringList sanitize(QStringView text);

/// Films only, none that is access-restricted; `text` in title, description or subject; `extra`
/// is one more clause.
QString buildQuery(const std::optional<QString> &text, const std::optional<QString> &extra);

/// A page of search results. Pages count from 1.
Result<QUrl> searchURL(const QString &query, const QString &sort, int rows, int page);

/// Everything about one item.
Result<QUrl> metadataURL(const QString &id);

} // namespace tavelo::ArchiveQuery
