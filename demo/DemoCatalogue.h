// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "FileHashes.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QUrlQuery>

#include <functional>
#include <memory>
#include <optional>

namespace tavelo {

/// The demo's films as the public catalogue would describe them.
class DemoCatalogue
{
public:
    /// Sizes are read off the files in `filmsFolder`.
    explicit DemoCatalogue(QString filmsFolder);

    /// The answer to an advanced search, by the clauses that Tavelo sends.
    QJsonObject search(const QUrlQuery &query) const;
    /// What makes an item's metadata document, which takes its time and may be run on any thread;
    /// the document is "{}" for an unknown identifier. The item lies in `folder` on `hosts`.
    std::function<QByteArray()> metadata(const QString &id, const QString &folder,
                                         const QStringList &hosts) const;
    /// Where a file of an item lies; absent when there is none of that name.
    std::optional<QString> filePath(const QString &id, const QString &name) const;
    /// The .torrent file of all an item's files; absent when it is not called `name`.
    std::optional<QByteArray> torrent(const QString &id, const QString &name) const;
    std::optional<QString> title(const QString &id) const;
    std::optional<QString> posterPath(const QString &id) const;

private:
    std::optional<QJsonObject> item(const QString &id) const;
    /// As they are described, each with the "film" that it is on this machine.
    QList<QJsonObject> filesOf(const QJsonObject &item) const;
    QList<QJsonObject> thumbnailsOf(const QJsonObject &item) const;
    QByteArray torrentOf(const QJsonObject &item) const;
    QString pathOf(const QString &film) const;

    QString m_filmsFolder;
    QJsonObject m_lengths; // of the films, in seconds
    const std::shared_ptr<FileHashes> m_hashes = std::make_shared<FileHashes>();
    QJsonArray m_items;
};

} // namespace tavelo
