// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ArchiveDetails.h"
#include "platform/Result.h"

#include <QCoroTask>

#include <optional>
#include <stop_token>

/// The Internet Archive's film catalogue. Main thread only; large answers are parsed off it.
namespace tavelo::OrvellaProvider {

/// One page of items in the order of `sort`; pages count from 1. An answer that makes no sense is
/// an empty page. Errors: those of fetchData.
QCoro::Task<Result<QList<MediaItem>>> search(std::optional<QString> text,
                                             std::optional<QString> extra, QString sort, int rows,
                                             int page, std::stop_token stop = {});

/// One item with its files. Errors: those of fetchData, and NetError::empty for an answer that
/// makes no sense.
QCoro::Task<Result<ArchiveDetails>> details(QString id, std::stop_token stop = {});

} // namespace tavelo::OrvellaProvider
