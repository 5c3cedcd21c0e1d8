// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>

namespace tavelo {

/// Messages of the desktop (org.freedesktop.Notifications 1.2). A desktop without that service
/// shows none. Main thread only.
class Notifier : public QObject
{
    Q_OBJECT

public:
    explicit Notifier(const QDBusConnection &bus, QObject *parent = nullptr);

    /// Plain texts. The latest takes the place of the one before.
    void show(const QString &title, const QString &text);

Q_SIGNALS:
    /// The user has clicked the message.
    void activated();

private Q_SLOTS:
    void actionInvoked(uint id, const QString &action);

private:
    QDBusConnection m_bus;
    uint m_shown = 0; // the service's number of the latest; 0: none
};

} // namespace tavelo
