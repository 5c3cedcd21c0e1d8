// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppState.h"
#include "main/DesktopManners.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>

class QQuickWindow;

namespace tavelo {

/// The program around its one window. Built in main(), before anything else of ours.
class Application
{
public:
    Application(int &argc, char **argv);

    AppState &state() { return *m_state; }
    QQuickWindow *window() const; // null before show()

    /// Makes the state and the window. What must be replaced (hosts, folders) is replaced by now.
    bool show();
    /// Until the window is closed.
    int run() { return QGuiApplication::exec(); }

private:
    QGuiApplication m_application;
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<QQmlApplicationEngine> m_engine; // goes before the state that it shows
    std::unique_ptr<DesktopManners> m_manners;
};

} // namespace tavelo
