// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/KeptFile.h"
#include "storage/HistoryEntry.h"

#include <QObject>

namespace tavelo {

/// The watch history, latest first, in a KeptFile. Keys are equal when they are canonically
/// equivalent (Unicode, 3.7). A position or duration that is not finite counts for nothing: such an
/// entry is not recorded, such a progress not taken. Main thread only.
class LibraryStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<tavelo::HistoryEntry> history READ history NOTIFY historyChanged)
    Q_PROPERTY(
        QList<tavelo::HistoryEntry> continueWatching READ continueWatching NOTIFY historyChanged)

public:
    static constexpr qsizetype maxEntries = 200;

    /// Reads the file, once.
    explicit LibraryStore(QObject *parent = nullptr);

    QList<HistoryEntry> history() const { return m_history; }
    /// What is neither just begun nor nearly done, in order.
    QList<HistoryEntry> continueWatching() const;
    std::optional<HistoryEntry> entryFor(const QString &key) const;

    /// Puts `entry` first, as it is, in place of any of its key; the oldest past maxEntries go.
    void record(const HistoryEntry &entry);
    /// In seconds; a duration that is not above 0 leaves the known one. The entry keeps its place.
    /// Without an entry of that key nothing happens.
    void updateProgress(const QString &key, double position, double duration);
    Q_INVOKABLE void remove(const QString &key);
    Q_INVOKABLE void clear();

    /// Where it lies, to hear of its troubles and to wait for it.
    KeptFile &file() { return m_file; }

Q_SIGNALS:
    void historyChanged();

private:
    bool take(const QByteArray &json);
    void setHistory(const QList<HistoryEntry> &history);

    QList<HistoryEntry> m_history;
    KeptFile m_file; // goes before the history that it writes
};

} // namespace tavelo
