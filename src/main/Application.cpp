// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/Application.h"

#include "main/Intake.h"
#include "main/LogOutput.h"
#include "main/X11Focus.h"
#include "platform/Log.h"
#include "platform/desktop/GioWorkspace.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/Fetch.h"
#include "platform/http/HttpClient.h"
#include "platform/http/ServiceHosts.h"
#include "platform/media/MediaEngine.h"
#include "storage/SettingsStore.h"
#include "ui/UiModule.h"

#include <QDir>
#include <QIcon>
#include <QQuickWindow>
#include <QStandardPaths>

#include <clocale>
#include <csignal>
#include <cstdio>

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

constexpr char activationVariable[] = "XDG_ACTIVATION_TOKEN";

/// The desktop's leave for this start to come forward: as Wayland has it, or as X11 does.
QString activationToken()
{
    const QString token = qEnvironmentVariable(activationVariable);
    return token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token;
}

} // namespace

Application::Application(int &argc, char **argv)
    : m_activationToken(activationToken())
    , m_application(prepared(argc), argv)
{
    QStringList arguments = QCoreApplication::arguments().mid(1);
    m_log = LogOutput::takeOption(arguments);
    m_requested = Intake::addresses(arguments, QDir::currentPath());
    // The toolkit has just taken over the user's locale; the media engine needs the decimal point.
    std::setlocale(LC_NUMERIC, "C");
    // A connection or a terminal that has gone is an error of the one who writes to it.
    std::signal(SIGPIPE, SIG_IGN);
    const QIcon own(QStringLiteral(":/tavelo.svg"));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("tavelo"), own));
}

std::optional<int> Application::claim()
{
    m_instance = std::make_unique<SingleInstance>(
        QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation),
        StandardFolders::configuration());
    switch (m_instance->claim({m_requested, m_activationToken})) {
    case SingleInstance::Role::First:
        if (m_log)
            LogOutput::start(*m_log, SettingsStore::defaultCachePath());
        // The folder of the start is not kept busy, and dialogs begin where the user's folders are.
        QDir::setCurrent(QDir::homePath());
        return std::nullopt;
    case SingleInstance::Role::Second:
        return 0;
    case SingleInstance::Role::Silent:
        break;
    }
    std::fputs("Tavelo is running already, but does not answer.\n", stderr);
    return 1;
}

bool Application::show()
{
    qCInfo(logApp).noquote() << QCoreApplication::applicationName() << TAVELO_VERSION << "on Qt"
                             << qVersion() << QGuiApplication::platformName();
    // What takes a few round trips goes on while the screens are made.
    const QUrl catalogue(ServiceHosts::current().archive);
    HttpClient::shared().connectAhead(catalogue);
    m_state = std::make_unique<AppState>([] { return MediaEngine::create(); },
                                         std::make_unique<GioWorkspace>());
    // Whoever looks at an item may play it next.
    QObject::connect(m_state.get(), &AppState::selectedItemChanged, &MediaEngine::preload);
    m_state->loadHome();
    QObject::connect(m_state.get(), &AppState::homeLoadingChanged, m_state.get(),
                     [this, catalogue] {
                         if (!m_state->featured().isEmpty()) // there is something to play next
                             Fetch::shared().connectAhead(catalogue);
                     });
    heedTheSystem();
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
            m_manners = std::make_unique<DesktopManners>(
                *m_state, *window(), [this] { comeForward({}); }, QDBusConnection::sessionBus());
        },
        Qt::QueuedConnection);
    window()->raise();
    window()->requestActivate();
    return true;
}

void Application::heedTheSystem()
{
    m_endSignals = std::make_unique<EndSignals>();
    // The window is not asked: the system does not wait for an answer.
    QObject::connect(m_endSignals.get(), &EndSignals::received, m_state.get(), [this] {
        m_state->saveAll();
        QCoreApplication::exit();
    });
    QObject::connect(
        &m_application, &QGuiApplication::commitDataRequest, m_state.get(),
        [this] { m_state->saveAll(); }, Qt::DirectConnection);
}

int Application::run()
{
    if (m_instance) {
        QObject::connect(m_instance.get(), &SingleInstance::called, window(),
                         [this](const SingleInstance::Call &call) {
                             open(call.addresses);
                             comeForward(call.activationToken);
                         });
    }
    open(m_requested);
    return QGuiApplication::exec();
}

void Application::open(const QStringList &addresses)
{
    for (const QString &address : addresses)
        Intake::open(*m_state, address);
}

void Application::comeForward(const QString &activationToken)
{
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        X11Focus::allow(activationToken);
    else if (!activationToken.isEmpty()) // the platform's part of Qt takes it from there
        qputenv(activationVariable, activationToken.toUtf8());
    window()->setWindowStates(window()->windowStates() & ~Qt::WindowMinimized);
    window()->raise();
    window()->requestActivate();
}

QQuickWindow *Application::window() const
{
    if (!m_engine || m_engine->rootObjects().isEmpty())
        return nullptr;
    return qobject_cast<QQuickWindow *>(m_engine->rootObjects().constFirst());
}

} // namespace tavelo
