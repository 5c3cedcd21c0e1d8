// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/BodyVersion.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace tavelo {

/// What a paused transfer needs to be taken up again.
struct ResumeToken
{
    QUrl url;          // as it was asked for
    QString partPath;  // where the bytes so far lie
    qint64 length = 0; // how many they are
    BodyVersion version = {};

    bool operator==(const ResumeToken &) const = default;

    /// Opaque to everyone else.
    QByteArray toBytes() const;
    /// Absent for anything that `toBytes` of this version of the program did not make.
    static std::optional<ResumeToken> fromBytes(const QByteArray &bytes);
};

} // namespace tavelo
