// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/desktop/SleepGuard.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace tavelo {

namespace {

QDBusMessage callTo(const char *method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.ScreenSaver"),
                                          QStringLiteral("/org/freedesktop/ScreenSaver"),
                                          QStringLiteral("org.freedesktop.ScreenSaver"),
                                          QLatin1String(method));
}

} // namespace

SleepGuard::SleepGuard(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{}

void SleepGuard::keepAwake(bool awake, const QString &reason)
{
    if (std::exchange(m_awake, awake) == awake)
        return;
    if (!awake)
        release();
    else if (!m_asking)
        inhibit(reason);
}

void SleepGuard::inhibit(const QString &reason)
{
    m_asking = true;
    auto call = callTo("Inhibit");
    call << QCoreApplication::applicationName() << reason;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<uint> reply = *watcher;
        watcher->deleteLater();
        m_asking = false;
        if (!reply.isError())
            m_cookie = reply.value();
        if (!m_awake)
            release(); // it was no longer wanted when the answer came
    });
}

void SleepGuard::release()
{
    if (!m_cookie)
        return;
    auto call = callTo("UnInhibit");
    call << *std::exchange(m_cookie, {});
    m_bus.send(call);
}

} // namespace tavelo
