// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QUrl>
#include <QtQmlIntegration>

namespace tavelo {

/// Numbers and addresses as the screens write them.
class Format : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Clock text of a position or duration in seconds.
    Q_INVOKABLE static QString time(double seconds);
    /// "12:05 watched", of a position in seconds.
    Q_INVOKABLE static QString watched(double seconds);
    /// "1.2 GB"; "—" below zero.
    Q_INVOKABLE static QString byteCount(qint64 bytes);
    /// "1.25x": no more digits than the rate has.
    Q_INVOKABLE static QString rate(double rate);
    /// The address of a file or folder.
    Q_INVOKABLE static QUrl fileAddress(const QString &path);
    /// Where an Image finds a picture of the net, cropped to its sourceSize, with corners of
    /// `radius` device pixels. Empty when `url` is.
};

} // namespace tavelo
