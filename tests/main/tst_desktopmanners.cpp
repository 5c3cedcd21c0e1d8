// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "main/DesktopManners.h"
#include "platform/files/StandardFolders.h"
#include "platform/media/MediaEngine.h"
#include "testlib/FakeWorkspace.h"
#include "testlib/PrivateBus.h"

#include <QDBusInterface>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QGuiApplication>
#include <QTest>
#include <QWindow>

using namespace tavelo;

namespace {

constexpr int patience = 20'000; // milliseconds

class FakeScreenSaver : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    QSet<uint> kept;

public Q_SLOTS:
    uint Inhibit(const QString &, const QString &)
    {
        kept.insert(++m_last);
        return m_last;
    }
    void UnInhibit(uint cookie) { kept.remove(cookie); }

private:
    uint m_last = 40;
};

class FakeNotifications : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QStringList shown;

public Q_SLOTS:
    uint Notify(const QString &, uint, const QString &, const QString &title, const QString &text,
                const QStringList &, const QVariantMap &, int)
    {
        shown.append(title + ": " + text);
        return 7;
    }

Q_SIGNALS:
    void ActionInvoked(uint id, const QString &action);
};

} // namespace

/// The program's side on one connection, the desktop's on another, on a bus of their own.
class TestDesktopManners : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void propertiesChanged(const QString &, const QVariantMap &changed, const QStringList &)
    {
        m_changed.append(changed.keys());
        m_properties.insert(changed);
    }
    void seeked(qlonglong position) { m_jumps.append(double(position) / 1e6); }

private:
    PrivateBus m_bus;
    QTemporaryDir m_folder;
    QStringList m_handed;
    FakeScreenSaver m_saver;
    FakeNotifications m_notifications;
    QStringList m_changed;
    QVariantMap m_properties;
    QList<double> m_jumps;
    int m_forward = 0;
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<QWindow> m_window;
    std::unique_ptr<DesktopManners> m_manners;

    VideoPlayerManager &player() { return *m_state->playback()->player(); }
    bool isAt(double seconds) { return qAbs(player().currentTime() - seconds) < 0.1; }

    static QDBusConnection desktop() { return QDBusConnection("desktop"); }

    static QDBusMessage call(const QString &interface, const QString &method,
                             const QVariantList &arguments)
    {
        auto message = QDBusMessage::createMethodCall("org.mpris.MediaPlayer2.tavelo",
                                                      "/org/mpris/MediaPlayer2", interface, method);
        message.setArguments(arguments);
        const QDBusPendingCall pending = desktop().asyncCall(message);
        if (!QTest::qWaitFor([&] { return pending.isFinished(); }))
            return QDBusMessage::createError(QDBusError::Timeout, method);
        return pending.reply();
    }
    static QDBusMessage ask(const QString &method, const QVariantList &arguments = {})
    {
        return call("org.mpris.MediaPlayer2.Player", method, arguments);
    }
    static QVariant get(const QString &property, const QString &interface = ".Player")
    {
        const auto reply = call("org.freedesktop.DBus.Properties", "Get",
                                {"org.mpris.MediaPlayer2" + interface, property});
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }
    static QVariantMap metadata()
    {
        return qdbus_cast<QVariantMap>(get("Metadata").value<QDBusArgument>());
    }
    static void set(const QString &property, const QVariant &value)
    {
        call("org.freedesktop.DBus.Properties", "Set",
             {"org.mpris.MediaPlayer2.Player", property, QVariant::fromValue(QDBusVariant(value))});
    }

private Q_SLOTS:
    void initTestCase()
    {
        StandardFolders::relocate(m_folder.path());
        QVERIFY(m_bus.start());
        QDBusConnection::connectToBus(m_bus.address(), "program");
        QDBusConnection::connectToBus(m_bus.address(), "desktop");
        const auto all = QDBusConnection::ExportAllContents;
        QVERIFY(desktop().registerObject("/org/freedesktop/ScreenSaver", &m_saver, all));
        QVERIFY(desktop().registerService("org.freedesktop.ScreenSaver"));
        QVERIFY(desktop().registerObject("/org/freedesktop/Notifications", &m_notifications, all));
        QVERIFY(desktop().registerService("org.freedesktop.Notifications"));
        const QString path = "/org/mpris/MediaPlayer2";
        QVERIFY(desktop().connect({}, path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                                  this,
                                  SLOT(propertiesChanged(QString, QVariantMap, QStringList))));
        QVERIFY(desktop().connect({}, path, "org.mpris.MediaPlayer2.Player", "Seeked", this,
                                  SLOT(seeked(qlonglong))));
    }

    void init()
    {
        m_state = std::make_unique<AppState>([] { return MediaEngine::create({.headless = true}); },
                                             std::make_unique<FakeWorkspace>(m_handed));
        m_window = std::make_unique<QWindow>();
        m_manners = std::make_unique<DesktopManners>(
            *m_state, *m_window, [this] { ++m_forward; }, QDBusConnection("program"));
        m_forward = 0;
        m_changed.clear();
        m_properties.clear();
        m_jumps.clear();
    }

    void cleanup()
    {
        m_manners.reset();
        QTRY_VERIFY(m_saver.kept.isEmpty());
        m_state.reset();
        QDBusConnection("program").unregisterService("org.mpris.MediaPlayer2.tavelo");
    }

    void cleanupTestCase()
    {
        QDBusConnection::disconnectFromBus("program");
        QDBusConnection::disconnectFromBus("desktop");
    }

    void withoutAFilm()
    {
        QCOMPARE(get("Identity", ""), "Tavelo");
        QCOMPARE(get("DesktopEntry", ""), "tavelo");
        QCOMPARE(get("PlaybackStatus"), "Stopped");
        QCOMPARE(get("CanPlay"), false);
        QVERIFY(metadata().isEmpty());
        for (const QString method : {"PlayPause", "Play", "Pause", "Stop", "Next", "Previous"})
            QCOMPARE(ask(method).type(), QDBusMessage::ReplyMessage);
        ask("Seek", {qlonglong(5'000'000)});
        QVERIFY(!m_state->playback()->nowPlaying() && m_changed.isEmpty());
    }

    void playsByTheKeysOfTheDesktop()
    {
        HistoryEntry film;
        film.key = "abc|long.mp4";
        film.itemID = "abc";
        film.title = "A <b>Film</b>";
        film.source = TAVELO_CLIPS "/long.mp4";
        film.isLocal = true;
        film.thumbnail = "http://127.0.0.1:1/a%20poster.jpg";
        m_state->resume(film);
        QTRY_COMPARE(m_properties.value("PlaybackStatus"), "Playing");
        QTRY_VERIFY_WITH_TIMEOUT(get("CanSeek").toBool(), patience);
        QCOMPARE(metadata().value("xesam:title"), film.title);
        QCOMPARE(metadata().value("mpris:artUrl"), *film.thumbnail);
        QVERIFY(qAbs(metadata().value("mpris:length").toDouble() / 1e6 - 60) < 0.1);
        QTRY_COMPARE(m_saver.kept.size(), 1);

        ask("Pause");
        QTRY_COMPARE_WITH_TIMEOUT(m_properties.value("PlaybackStatus"), "Paused", patience);
        QVERIFY(!player().isPlaying());
        QTRY_VERIFY(m_saver.kept.isEmpty());
        ask("Pause");
        ask("Play");
        QTRY_VERIFY_WITH_TIMEOUT(player().isPlaying(), patience);
        ask("PlayPause");
        QTRY_VERIFY_WITH_TIMEOUT(!player().isPlaying(), patience);

        ask("Stop");
        QTRY_COMPARE(get("PlaybackStatus"), "Stopped");
        QVERIFY(!m_state->playback()->nowPlaying() && !m_state->showPlayer());
    }

    void seeksAndSets()
    {
        m_state->playLocal({QUrl::fromLocalFile(TAVELO_CLIPS "/long.mp4"), 0, {}});
        QTRY_VERIFY_WITH_TIMEOUT(get("CanSeek").toBool(), patience);
        ask("Pause");
        const QVariant film = metadata().value("mpris:trackid");
        ask("SetPosition", {film, qlonglong(20'000'000)});
        QTRY_VERIFY(isAt(20));
        QTRY_VERIFY(!m_jumps.isEmpty());
        QCOMPARE(m_jumps.first(), 20);
        QVERIFY(qAbs(get("Position").toDouble() / 1e6 - 20) < 0.1);
        ask("Seek", {qlonglong(-5'500'000)});
        QTRY_VERIFY(isAt(14.5));
        ask("Seek", {qlonglong(-50'000'000)});
        QTRY_VERIFY(isAt(0));
        ask("SetPosition", {film, qlonglong(-1)});
        ask("SetPosition", {film, qlonglong(61'000'000)});
        ask("SetPosition", {QVariant::fromValue(QDBusObjectPath("/other")), qlonglong(9'000'000)});
        QTRY_VERIFY(isAt(0));

        set("Volume", 0.25);
        QTRY_COMPARE(m_properties.value("Volume").toDouble(), 0.25);
        player().setMuted(true);
        QTRY_COMPARE(m_properties.value("Volume").toDouble(), 0.0);
        set("Volume", 1.5);
        QTRY_COMPARE(player().volume(), 1.0F);
        QVERIFY(!player().isMuted());
        set("Volume", qQNaN());
        set("Rate", 1.5);
        QTRY_COMPARE(player().rate(), 1.5F);
        QCOMPARE(player().volume(), 1.0F);
        const auto jumps = m_jumps.size();
        ask("Play");
        QTRY_VERIFY_WITH_TIMEOUT(player().currentTime() > 2, patience);
        QVERIFY(m_jumps.size() < jumps + 3); // playing on is none, a late start is one
        set("Rate", 0.0);
        QTRY_VERIFY_WITH_TIMEOUT(!player().isPlaying(), patience);
    }

    void raisesAndQuits()
    {
        m_window->show();
        call("org.mpris.MediaPlayer2", "Raise", {});
        QCOMPARE(m_forward, 1);
        call("org.mpris.MediaPlayer2", "Quit", {});
        QTRY_VERIFY(!m_window->isVisible());
    }

    void tellsOfDownloadsBehindOtherWindows()
    {
        HttpService server;
        server.serve("/a.mp4", {.body = "a film"});
        QVERIFY(!m_state->downloads()->start("A <b>Film</b> & more", server.url("/a.mp4"), 6));
        QTRY_COMPARE(m_notifications.shown,
                     QStringList{"Download finished: A &lt;b&gt;Film&lt;/b&gt; &amp; more"});
        m_state->setShowPlayer(true);
        Q_EMIT m_notifications.ActionInvoked(8, "default"); // another program's
        Q_EMIT m_notifications.ActionInvoked(7, "default");
        QTRY_COMPARE(m_state->section(), SidebarSection::Downloads);
        QVERIFY(!m_state->showPlayer());
        QCOMPARE(m_forward, 1);

        m_window->show();
        m_window->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QVERIFY(!m_state->downloads()->start("Another", server.url("/a.mp4"), 6));
        QTRY_VERIFY(m_state->downloads()->tasks().first().is<DownloadTask::Finished>());
        QCOMPARE(m_notifications.shown.size(), 1);
    }
};

QTEST_MAIN(TestDesktopManners)
#include "tst_desktopmanners.moc"
