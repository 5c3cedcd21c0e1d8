// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

namespace tavelo {

/// One browsable collection of the catalogue.
struct Collection
{
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)

public:
    QString id;
    QString title;
    QString query; // an advanced-search clause

    /// All of them, in the order in which they are shown.
    static const QList<Collection> &all();

    bool operator==(const Collection &) const = default;
};

} // namespace tavelo
