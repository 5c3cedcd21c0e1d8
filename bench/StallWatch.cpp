// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "StallWatch.h"

#include <array>
#include <cstdlib>
#include <memory>

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <pthread.h>
#include <signal.h>

namespace tavelo {

namespace {

constexpr double shortest = 4; // milliseconds
constexpr double sampledAt = 8;

// Written by the signal's handler on the main thread, read there at the next tick.
std::array<void *, 64> frames;
std::atomic<int> frameCount = 0;

void takeStack(int)
{
    frameCount = backtrace(frames.data(), static_cast<int>(frames.size()));
}

QString nameOf(void *address)
{
    Dl_info info = {};
    if (!dladdr(address, &info) || !info.dli_sname)
        return {};
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, nullptr), &std::free);
    return QString::fromLatin1(name ? name.get() : info.dli_sname).section(QLatin1Char('('), 0, 0);
}

/// The innermost functions that have a name, ours before all others.
QString described()
{
    QStringList names;
    QStringList ours;
    for (int i = 2; i < frameCount; ++i) { // past the handler and its trampoline
        const QString name = nameOf(frames[static_cast<size_t>(i)]);
        if (name.isEmpty() || name.contains(QLatin1String("StallWatch")))
            continue;
        names.append(name);
        if (name.startsWith(QLatin1String("tavelo::")))
            ours.append(name);
    }
    if (names.isEmpty())
        return QStringLiteral("not seen in time");
    const QString inner = names.mid(0, 3).join(QLatin1String(" < "));
    return ours.isEmpty() ? inner : ours.first() + QLatin1String(", in ") + inner;
}

} // namespace

StallWatch::StallWatch()
{
    takeStack(0); // the first call loads a library
    frameCount = 0;
    struct sigaction action = {};
    action.sa_handler = takeStack;
    action.sa_flags = SA_RESTART;
    sigaction(SIGUSR2, &action, nullptr);
    m_clock.start();
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tick(); });
    m_timer.start(1);
    m_thread = std::jthread([this, main = pthread_self()](const std::stop_token &stop) {
        qint64 sampled = -1;
        while (!stop.stop_requested()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            const qint64 last = m_sharedTick;
            const double late = double(m_clock.nsecsElapsed() - last) / 1e6;
            if (!m_samples || late < sampledAt || std::exchange(sampled, last) == last)
                continue;
            pthread_kill(main, SIGUSR2);
        }
    });
}

StallWatch::~StallWatch()
{
    m_thread.request_stop();
    m_thread.join();
}

void StallWatch::tick()
{
    const qint64 now = m_clock.nsecsElapsed();
    const double late = double(now - std::exchange(m_lastTick, now)) / 1e6 - 1;
    m_sharedTick = now;
    if (late >= shortest)
        m_stalls.append({late, m_step, late >= sampledAt ? described() : QString()});
    frameCount = 0;
}

} // namespace tavelo
