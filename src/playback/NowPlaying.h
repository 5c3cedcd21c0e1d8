// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>
#include <QString>
#include <QUrl>

namespace tavelo {

/// What is playing, for the screens that show it.
struct NowPlaying
{
    Q_GADGET
    Q_PROPERTY(QString key MEMBER key CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QUrl thumbnail MEMBER thumbnail CONSTANT)

public:
    QString key; // item identifier, "|", file name
    QString title;
    QUrl thumbnail; // empty: none

    bool operator==(const NowPlaying &) const = default;
};

} // namespace tavelo
