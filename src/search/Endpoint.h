// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QList>
#include <QUrl>

namespace tavelo {

struct QueryItem
{
    QString name;
    QString value;
};

/// `base` with `path` appended to its own and `items` to its own query; each name and value is
/// percent-encoded whole (RFC 3986, all but the unreserved characters). NetError::badURL when
/// `base` is no URL with a host.
Result<QUrl> endpoint(const QString &base, const QString &path, const QList<QueryItem> &items);

} // namespace tavelo
