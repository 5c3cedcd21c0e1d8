// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/Application.h"

#include "platform/MediaEngine.h"
#include "platform/desktop/GioWorkspace.h"
#include "ui/UiModule.h"

#include <QIcon>
#include <QQuickWindow>

#include <clocale>

namespace tavelo {

namespace {

/// Before the application object exists: films are drawn with OpenGL.
int &prepared(int &argc)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QCoreApplication::setApplicationName(QStringLiteral("Tavelo"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TAVELO_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("tavelo"));
    return argc;
}

} // namespace

Application::Application(int &argc, char **argv)
    : m_application(prepared(argc), argv)
{
    // The toolkit has just taken over the user's locale; the media engine needs the decimal point.
    std::setlocale(LC_NUMERIC, "C");
}

bool Application::show()
{
    m_state = std::make_unique<AppState>([] { return MediaEngine::create(); },
                                         std::make_unique<GioWorkspace>());
    // Whoever looks at an item may play it next.
    QObject::connect(m_state.get(), &AppState::selectedItemChanged, &MediaEngine::preload);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    UiModule::prepare(*m_engine);
    m_engine->setInitialProperties({{QStringLiteral("app"), QVariant::fromValue(m_state.get())}});
    m_engine->load(UiModule::mainWindow());
    if (!window())
        return false;
    // The bus is not waited for before the window is there.
    QMetaObject::invokeMethod(
        window(),
        [this] {
            m_manners = std::make_unique<DesktopManners>(*m_state, *window(),
                                                         QDBusConnection::sessionBus());
        },
        Qt::QueuedConnection);
    return true;
}

QQuickWindow *Application::window() const
{
    if (!m_engine || m_engine->rootObjects().isEmpty())
        return nullptr;
    return qobject_cast<QQuickWindow *>(m_engine->rootObjects().constFirst());
}

} // namespace tavelo
