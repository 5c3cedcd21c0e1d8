// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/Fmt.h"

#include <QMetaType>
#include <QString>
#include <QUrl>

#include <optional>

namespace tavelo {

/// One file of an item.
struct ArchiveFile
{
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString format MEMBER format CONSTANT)
    Q_PROPERTY(QString sizeText READ sizeText CONSTANT)
    Q_PROPERTY(QUrl url MEMBER url CONSTANT)

public:
    QString name;               // path inside the item, "/" between its parts
    QString format;             // the service's label; empty: none
    std::optional<qint64> size; // bytes; absent: unknown
    QUrl url;                   // direct download address

    QString sizeText() const { return Fmt::byteCount(size); }

    bool operator==(const ArchiveFile &) const = default;
};

} // namespace tavelo
