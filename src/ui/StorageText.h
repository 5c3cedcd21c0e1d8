// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ProviderConfig.h"

#include <QObject>
#include <QtQmlIntegration>

namespace tavelo {

/// What the screens say about the cache and providers.
class StorageText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE static QString freeSpace(qint64 bytes);
    Q_INVOKABLE static QString cacheUse(qint64 usedBytes, qint64 freeBytes);
    Q_INVOKABLE static QString cacheLimit(qint64 megabytes);
    /// 0: never.
    Q_INVOKABLE static QString autoClean(qint64 days);
    /// A provider's kind and address.
    Q_INVOKABLE static QString provider(const tavelo::ProviderConfig &config);
};

} // namespace tavelo
