// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/Checksum.h"
#include "catalogue/Fmt.h"
#include "platform/DisplayText.h"

#include <QMetaType>
#include <QString>
#include <QUrl>

#include <optional>

namespace tavelo {

/// One file of an item.
struct ArchiveFile
{
    Q_GADGET
    Q_PROPERTY(QString name READ shownName CONSTANT)
    Q_PROPERTY(QString format READ shownFormat CONSTANT)
    Q_PROPERTY(QString sizeText READ sizeText CONSTANT)

public:
    QString name;               // path inside the item, "/" between its parts
    QString format;             // the service's label; empty: none
    std::optional<qint64> size; // bytes; absent: unknown
    Checksum checksum = {};     // of its bytes
    QString itemRoot;           // the address below which its item's files are; ends in "/"

    /// Its direct download address. Made when it is asked for: an item may have very many files.
    QUrl url() const;

    // For the screens.
    QString shownName() const { return DisplayText::name(name); }
    QString shownFormat() const { return DisplayText::name(format); }
    QString sizeText() const { return Fmt::byteCount(size); }

    bool operator==(const ArchiveFile &) const = default;
};

} // namespace tavelo
