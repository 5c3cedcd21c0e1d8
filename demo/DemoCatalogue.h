// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QUrlQuery>

#include <optional>

namespace tavelo {

/// The demo's films as the public catalogue would describe them.
class DemoCatalogue
{
public:
    /// Sizes are read off the files in `filmsFolder`.
    explicit DemoCatalogue(QString filmsFolder);

    /// The answer to an advanced search, by the clauses that Tavelo sends.
    QByteArray search(const QUrlQuery &query) const;
    /// An item's metadata document; "{}" for an unknown identifier.
    QByteArray metadata(const QString &id) const;
    /// Where a file of an item lies; absent when there is none of that name.
    std::optional<QString> filePath(const QString &id, const QString &name) const;
    /// The .torrent file of all an item's files; absent when it is not called `name`.
    std::optional<QByteArray> torrent(const QString &id, const QString &name) const;
    std::optional<QString> title(const QString &id) const;
    std::optional<QString> posterPath(const QString &id) const;

private:
    std::optional<QJsonObject> item(const QString &id) const;
    QByteArray torrentOf(const QJsonObject &item) const;
    QString pathOf(const QString &film) const;

    QString m_filmsFolder;
    QJsonArray m_items;
};

} // namespace tavelo
