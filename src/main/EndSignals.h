// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace tavelo {

/// Tells that the system asks the program to end: SIGTERM, SIGINT or SIGHUP. Each is caught once;
/// when it comes again it ends the program at once. One that is ignored stays so. One object in a
/// process.
class EndSignals : public QObject
{
    Q_OBJECT

public:
    EndSignals();
    ~EndSignals() override;

Q_SIGNALS:
    void received();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace tavelo
