// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>

#include <optional>

namespace tavelo {

/// Keeps the machine and its screen awake while a film plays (org.freedesktop.ScreenSaver). A
/// desktop without that service is left to itself. The bus ends what is left over when the program
/// ends. Main thread only.
class SleepGuard : public QObject
{
    Q_OBJECT

public:
    explicit SleepGuard(const QDBusConnection &bus, QObject *parent = nullptr);
    ~SleepGuard() override { release(); }

    /// `reason` is shown to the user by some desktops.
    void keepAwake(bool awake, const QString &reason = {});

private:
    void inhibit(const QString &reason);
    void release();

    QDBusConnection m_bus;
    bool m_awake = false;
    bool m_asking = false;
    std::optional<uint> m_cookie;
};

} // namespace tavelo
