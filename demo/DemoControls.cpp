// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoControls.h"

namespace tavelo {

void DemoControls::setFaults(const QList<DemoFaults> &faults)
{
    const std::scoped_lock lock(m_mutex);
    m_faults = faults;
}

DemoFaults DemoControls::faultsFor(const QByteArray &path) const
{
    const std::scoped_lock lock(m_mutex);
    for (const DemoFaults &faults : m_faults) {
        if (faults.concerns(path))
            return faults;
    }
    return {};
}

void DemoControls::record(const DemoRequest &request)
{
    const std::scoped_lock lock(m_mutex);
    m_requests.append(request);
}

QList<DemoRequest> DemoControls::requests() const
{
    const std::scoped_lock lock(m_mutex);
    return m_requests;
}

void DemoControls::forgetRequests()
{
    const std::scoped_lock lock(m_mutex);
    m_requests.clear();
}

} // namespace tavelo
