// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNetworkCache>
#include <QCache>
#include <QNetworkDiskCache>
#include <QUrl>

namespace tavelo {

/// Keeps HTTP responses in a folder, and those lately read from it in memory. What may be kept and
/// for how long is the network library's decision (RFC 9111). One thread, the network's.
class ResponseCache : public QAbstractNetworkCache
{
    Q_OBJECT

public:
    static constexpr qint64 memoryBytes = 50LL * 1024 * 1024;
    static constexpr qint64 diskBytes = 300LL * 1024 * 1024;

    explicit ResponseCache(QObject *parent = nullptr);

    /// Where responses lie from now on; those in the former folder are left there and forgotten.
    void setFolder(const QString &folder);

    QNetworkCacheMetaData metaData(const QUrl &url) override;
    void updateMetaData(const QNetworkCacheMetaData &metaData) override;
    QIODevice *data(const QUrl &url) override;
    bool remove(const QUrl &url) override;
    qint64 cacheSize() const override;
    QIODevice *prepare(const QNetworkCacheMetaData &metaData) override;
    void insert(QIODevice *device) override;
    void clear() override;

private:
    struct Response
    {
        QNetworkCacheMetaData metaData;
        QByteArray body;
    };

    QNetworkDiskCache m_disk;
    QCache<QUrl, Response> m_memory; // costs are bytes
};

} // namespace tavelo
