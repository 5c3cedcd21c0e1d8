// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoFaults.h"
#include "DemoRequest.h"

#include <QList>

#include <mutex>

namespace tavelo {

/// What tests and the tour see and steer of the running services. Any thread, any time.
class DemoControls
{
public:
    /// In place of all that was set before. The first that concerns a path counts.
    void setFaults(const QList<DemoFaults> &faults);
    /// Faultless when nothing concerns `path`.
    DemoFaults faultsFor(const QByteArray &path) const;

    void record(const DemoRequest &request);
    /// In the order of their arrival, those that got no answer included.
    QList<DemoRequest> requests() const;
    void forgetRequests();

private:
    mutable std::mutex m_mutex; // guards what follows
    QList<DemoFaults> m_faults;
    QList<DemoRequest> m_requests;
};

} // namespace tavelo
