// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoApplication.h"

#include "platform/files/StandardFolders.h"
#include "platform/http/ServiceHosts.h"

namespace tavelo {

DemoApplication::DemoApplication(int &argc, char **argv)
    : m_application(argc, argv)
    , m_services(QCoreApplication::applicationDirPath() + QLatin1String("/../demo-films"))
{
    StandardFolders::relocate(m_folders.path());
}

void DemoApplication::useServices()
{
    ServiceHosts hosts;
    hosts.archive = m_services.baseUrl();
    hosts.apibay = m_services.baseUrl();
    hosts.yts = m_services.baseUrl();
    ServiceHosts::replace(hosts);
}

} // namespace tavelo
