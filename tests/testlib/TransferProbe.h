// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TransferDelegate.h"

#include <QEventLoop>
#include <QFile>
#include <QObject>
#include <QTimer>

#include <map>
#include <mutex>

namespace tavelo {

/// A session's client: keeps what it is told, and moves each finished file to the path that its
/// description names.
class TransferProbe : public QObject, public TransferDelegate
{
    Q_OBJECT

public:
    struct Record
    {
        qint64 received = -1;
        qint64 expected = -1;
        int reports = 0;
        int status = 0;
        int finishes = 0;
        int ends = 0;
        int lateCalls = 0; // after the end
        std::optional<Error> error = {};
        QByteArray token = {};
    };

    Record of(TransferId id) const
    {
        const std::scoped_lock lock(m_mutex);
        const auto found = m_records.find(id);
        return found == m_records.end() ? Record() : found->second;
    }

    std::map<TransferId, Record> records() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_records;
    }

    /// Callbacks so far.
    int calls() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_calls;
    }

    /// Whether `condition` holds within 10 s. It is asked again after every callback.
    template <typename Condition>
    bool wait(Condition condition)
    {
        QEventLoop loop;
        QTimer::singleShot(10'000, &loop, &QEventLoop::quit);
        connect(this, &TransferProbe::told, &loop, [&] {
            if (condition())
                loop.quit();
        });
        if (!condition())
            loop.exec();
        return condition();
    }

    bool waitEnd(TransferId id)
    {
        return wait([&] { return of(id).ends > 0; });
    }

    bool waitReceived(TransferId id, qint64 bytes)
    {
        return wait([&] { return of(id).received >= bytes; });
    }

    void dataWritten(const TransferInfo &info, qint64 received, qint64 expected) override
    {
        note(info, [&](Record &record) {
            record.received = received;
            record.expected = expected;
            ++record.reports;
        });
    }

    void finished(const TransferInfo &info, const QString &file) override
    {
        if (!file.isEmpty())
            QFile::rename(file, info.description);
        note(info, [&](Record &record) { ++record.finishes; });
    }

    void completed(const TransferInfo &info, const std::optional<Error> &error) override
    {
        note(info, [&](Record &record) {
            record.error = error;
            ++record.ends;
        });
    }

    void paused(const TransferInfo &info, const QByteArray &token) override
    {
        note(info, [&](Record &record) {
            record.token = token;
            ++record.ends;
        });
    }

Q_SIGNALS:
    void told(); // on the session's thread

private:
    template <typename Change>
    void note(const TransferInfo &info, Change change)
    {
        {
            const std::scoped_lock lock(m_mutex);
            ++m_calls;
            Record &record = m_records[info.id];
            record.lateCalls += record.ends;
            record.status = info.status;
            change(record);
        }
        Q_EMIT told();
    }

    mutable std::mutex m_mutex;
    std::map<TransferId, Record> m_records;
    int m_calls = 0;
};

} // namespace tavelo
