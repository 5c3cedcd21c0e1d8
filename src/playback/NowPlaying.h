// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayText.h"

#include <QMetaType>
#include <QString>
#include <QUrl>

namespace tavelo {

/// What is playing, for the screens that show it.
struct NowPlaying
{
    Q_GADGET
    Q_PROPERTY(QString key MEMBER key CONSTANT)
    Q_PROPERTY(QString title READ shownTitle CONSTANT)
    Q_PROPERTY(QUrl thumbnail MEMBER thumbnail CONSTANT)

public:
    QString key; // item identifier, "|", file name
    QString title;
    QUrl thumbnail; // empty: none

    QString shownTitle() const { return DisplayText::name(title); } // for the screens

    bool operator==(const NowPlaying &) const = default;
};

} // namespace tavelo
