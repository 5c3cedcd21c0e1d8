// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoServer.h"
#include "main/Application.h"

#include <QTemporaryDir>

namespace tavelo {

/// The program on the demo's services, with folders of its own that go with it.
class DemoApplication
{
public:
    DemoApplication(int &argc, char **argv);

    /// Puts the demo's services in place of the public ones; before the window is shown.
    void useServices();
    bool show() { return m_application.show(); }
    int run() { return m_application.run(); }

    DemoServer &services() { return m_services; }
    Application &application() { return m_application; }

private:
    QTemporaryDir m_folders;
    Application m_application;
    DemoServer m_services;
};

} // namespace tavelo
