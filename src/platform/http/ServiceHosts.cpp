// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/ServiceHosts.h"

namespace tavelo {

namespace {

ServiceHosts &hostsInForce()
{
    static ServiceHosts hosts;
    return hosts;
}

} // namespace

const ServiceHosts &ServiceHosts::current()
{
    return hostsInForce();
}

void ServiceHosts::replace(const ServiceHosts &hosts)
{
    hostsInForce() = hosts;
}

} // namespace tavelo
