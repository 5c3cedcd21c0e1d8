// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/desktop/Notifier.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

namespace tavelo {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");

} // namespace

Notifier::Notifier(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    m_bus.connect(service, path, service, QStringLiteral("ActionInvoked"), this,
                  SLOT(actionInvoked(uint, QString)));
}

void Notifier::show(const QString &title, const QString &text)
{
    auto call = QDBusMessage::createMethodCall(service, path, service, QStringLiteral("Notify"));
    const QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("tavelo")}};
    constexpr int byTheServer = -1; // how long it stays
    // The text may hold markup by that standard, the title may not.
    call << QCoreApplication::applicationName() << m_shown << QStringLiteral("tavelo") << title
         << text.toHtmlEscaped() << QStringList{QStringLiteral("default"), QString()} << hints
         << byTheServer;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<uint> reply = *watcher;
        watcher->deleteLater();
        m_shown = reply.isError() ? 0 : reply.value();
    });
}

void Notifier::actionInvoked(uint id, const QString &)
{
    if (id == m_shown && id != 0)
        Q_EMIT activated();
}

} // namespace tavelo
