// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/StandardFolders.h"
#include "storage/LibraryStore.h"

#include <QFile>
#include <QTest>

namespace tavelo {

inline QString historyFile()
{
    return StandardFolders::support() + "/history.json";
}

inline QByteArray content(const QString &path = historyFile())
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void write(const QByteArray &json)
{
    QFile file(historyFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(json);
}

inline HistoryEntry entry(const QString &key, double position = 0, double duration = 0)
{
    HistoryEntry made;
    made.key = key;
    made.position = position;
    made.duration = duration;
    made.lastPlayed = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);
    return made;
}

inline QStringList keysOf(const QList<HistoryEntry> &history)
{
    QStringList keys;
    for (const HistoryEntry &each : history)
        keys.append(each.key);
    return keys;
}

} // namespace tavelo
