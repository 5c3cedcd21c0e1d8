// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/BodyVersion.h"
#include "transfers/ByteSpans.h"

#include <QJsonObject>

namespace tavelo {

/// What lies in a part file.
struct PartState
{
    BodyVersion version = {};
    ByteSpans done = {};
    bool sealed = false; // PartFile::seal was the last thing that was done to it

    bool isWhole() const { return version.total >= 0 && done.gapFrom(0, version.total).isEmpty(); }

    QJsonObject toJson() const;
    /// Absent for what is no such state.
    static std::optional<PartState> fromJson(const QJsonObject &object);

    bool operator==(const PartState &) const = default;
};

} // namespace tavelo
