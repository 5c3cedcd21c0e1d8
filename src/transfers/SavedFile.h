// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayText.h"

#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QUrl>

namespace tavelo {

/// One video file of the downloads folder.
struct SavedFile
{
    Q_GADGET
    Q_PROPERTY(QUrl url MEMBER url CONSTANT)
    Q_PROPERTY(QString title READ shownTitle CONSTANT)
    Q_PROPERTY(qint64 size MEMBER size CONSTANT)
    Q_PROPERTY(QDateTime added MEMBER added CONSTANT)

public:
    QUrl url;        // of a file
    qint64 size = 0; // bytes
    QDateTime added; // when it was created; the epoch's start when the file system does not know

    /// The file's name without its extension.
    QString title() const;
    QString shownTitle() const { return DisplayText::name(title()); } // for the screens

    bool operator==(const SavedFile &) const = default;
};

/// The video files that lie in `folder` itself, latest first; hidden ones are left out. For
/// background threads.
QList<SavedFile> savedFilesIn(const QString &folder);

} // namespace tavelo
