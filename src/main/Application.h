// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppState.h"
#include "main/DesktopManners.h"
#include "main/EndSignals.h"
#include "main/SingleInstance.h"

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

    /// Makes this the one program of the user, or hands what it was started with to the one that
    /// runs. A value is the code to end with.
    std::optional<int> claim();
    /// Makes the state and the window. What must be replaced (hosts, folders) is replaced by now.
    bool show();
    /// Opens what the program was started with, and runs until the window is closed.
    int run();

private:
    void heedTheSystem();
    void open(const QStringList &addresses);
    void comeForward(const QString &activationToken);

    QString m_activationToken; // of this start, read before the toolkit takes it away
    QGuiApplication m_application;
    std::optional<QStringList> m_log;           // categories that this start shall tell of
    QStringList m_requested;                    // addresses that this start shall open
    std::unique_ptr<SingleInstance> m_instance; // after claim()
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<QQmlApplicationEngine> m_engine; // goes before the state that it shows
    std::unique_ptr<DesktopManners> m_manners;
    std::unique_ptr<EndSignals> m_endSignals;
};

} // namespace tavelo
