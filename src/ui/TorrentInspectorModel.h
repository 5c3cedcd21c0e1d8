// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayText.h"
#include "torrent/TorrentInfo.h"

#include <QAbstractListModel>
#include <QtQmlIntegration>

namespace tavelo {

/// What the inspector says of a torrent; its rows are the files.
class TorrentInspectorModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariant info READ info WRITE setInfo NOTIFY infoChanged)
    Q_PROPERTY(QString name READ name NOTIFY infoChanged)
    Q_PROPERTY(QString infoHash READ infoHash NOTIFY infoChanged)
    Q_PROPERTY(QString hashText READ hashText NOTIFY infoChanged)
    Q_PROPERTY(QString summary READ summary NOTIFY infoChanged)
    Q_PROPERTY(QString trackersText READ trackersText NOTIFY infoChanged)
    Q_PROPERTY(QString magnet READ magnet NOTIFY infoChanged)
    Q_PROPERTY(QUrl fileURL READ fileURL NOTIFY infoChanged)
    Q_PROPERTY(bool hasFile READ hasFile NOTIFY infoChanged)
    Q_PROPERTY(int count READ count NOTIFY infoChanged)

public:
    enum Role { PathRole = Qt::UserRole, SymbolRole, SizeRole };

    using QAbstractListModel::QAbstractListModel;

    QVariant info() const { return QVariant::fromValue(m_info); }
    void setInfo(const QVariant &info); // a TorrentInfo; anything else is none
    QString name() const { return DisplayText::name(m_info.name); } // for the screen
    QString infoHash() const { return m_info.infoHash; }
    QString hashText() const;
    QString summary() const; // of the files
    QString trackersText() const;
    QString magnet() const { return m_info.magnet; }
    QUrl fileURL() const { return m_info.fileURL.value_or(QUrl()); } // empty: not from a file
    bool hasFile() const { return m_info.fileURL.has_value(); }
    int count() const { return static_cast<int>(m_info.files.size()); }

    /// The symbol for a file, by what its path ends in.
    static QString symbolFor(const QString &path);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void infoChanged();

private:
    TorrentInfo m_info;
    qsizetype m_videos = 0;
};

} // namespace tavelo
