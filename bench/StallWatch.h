// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QString>
#include <QTimer>

#include <atomic>
#include <thread>

namespace tavelo {

/// One time that the main thread did not come round to its next event.
struct Stall
{
    double milliseconds = 0;
    QString step;  // of the program's walk
    QString cause; // what the thread was in, as far as symbols tell
};

/// Watches how long the main thread lets its events wait: a timer ticks there every millisecond,
/// and a thread beside it takes the main thread's stack whenever the tick is late. Made on the main
/// thread; one at a time.
class StallWatch
{
public:
    StallWatch();
    ~StallWatch();
    Q_DISABLE_COPY_MOVE(StallWatch)

    /// Names what the program does from now on. Taking a stack waits for the loader's lock, so none
    /// is taken while the program loads libraries.
    void setStep(const QString &step, bool loadsLibraries)
    {
        m_step = step;
        m_samples = !loadsLibraries;
    }
    /// Those of 4 ms and more, in their order.
    const QList<Stall> &stalls() const { return m_stalls; }

private:
    void tick();

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_lastTick = 0;                // nanoseconds
    std::atomic<qint64> m_sharedTick = 0; // the same, for the thread
    QString m_step;
    std::atomic_bool m_samples = true;
    QList<Stall> m_stalls;
    std::jthread m_thread;
};

} // namespace tavelo
