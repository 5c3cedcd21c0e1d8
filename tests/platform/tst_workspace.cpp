// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/desktop/GioWorkspace.h"
#include "testlib/Awaited.h"
#include "testlib/PrivateBus.h"
#include "testlib/Table.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

namespace {

constexpr int endlessMs = 20'000;

/// Done in a process of its own, as the registry is read but once in each.
QString done(const QString &deed, const QString &object, int patienceMs)
{
    GioWorkspace workspace{std::chrono::milliseconds(patienceMs)};
    if (deed == "find")
        return awaited(workspace.applicationFor(object)).value_or("none");
    if (deed == "line")
        return awaited(workspace.isLineMetered()) ? "metered" : "free";
    const auto error = awaited(deed == "open"  ? workspace.open(object)
                               : deed == "web" ? workspace.openWebPage(QUrl(object))
                                               : workspace.showInFileManager(object));
    if (!error)
        return "done";
    return error->kind == ErrorKind::BadUrl ? "refused" : "failed: " + error->text;
}

void write(const QString &path, const QString &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content.toUtf8());
    file.setPermissions(file.permissions() | QFile::ExeOwner);
}

class FakeFileManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    bool answers = true;
    QStringList shown;

public Q_SLOTS:
    void ShowItems(const QStringList &uris, const QString &)
    {
        shown += uris;
        setDelayedReply(!answers);
    }
};

class FakeNetworkManager : public QDBusVirtualObject
{
public:
    std::optional<uint> metered; // absent: it does not answer

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        const QVariantList asked{"org.freedesktop.NetworkManager", "Metered"};
        if (message.interface() != "org.freedesktop.DBus.Properties" || message.member() != "Get" ||
            message.arguments() != asked)
            return false;
        message.setDelayedReply(true);
        if (metered)
            bus.send(message.createReply(QVariant::fromValue(QDBusVariant(*metered))));
        return true;
    }
};

} // namespace

class TestWorkspace : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    PrivateBus m_bus;

    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// "one": an application that writes its arguments to the file "one.args".
    void makeEntry(const QString &name, const QString &command, const QString &more = {}) const
    {
        write(path("data/applications/" + name + ".desktop"),
              QString("[Desktop Entry]\nType=Application\nName=%1\nExec=%2\n%3\n")
                  .arg(name, command, more));
    }

    /// Registers applications for everything that may be asked for, the first as the default.
    void registerFor(const QStringList &names) const
    {
        QString defaults = "[Default Applications]\n";
        QString added = "[Added Associations]\n";
        for (const QString type :
             {"x-scheme-handler/magnet", "x-scheme-handler/http", "x-scheme-handler/https",
              "x-scheme-handler/ftp", "x-scheme-handler/javascript", "x-scheme-handler/file",
              "application/x-bittorrent", "text/plain", "inode/directory"}) {
            if (names.isEmpty())
                break;
            defaults += type + '=' + names.first() + ".desktop\n";
            added += type + '=' + names.join(".desktop;") + ".desktop;\n";
        }
        write(path("config/mimeapps.list"), defaults + added);
    }

    QString run(const QString &deed, const QString &object, int patienceMs = endlessMs) const
    {
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QSignalSpy finished(&process, &QProcess::finished);
        process.start(QCoreApplication::applicationFilePath(),
                      {"--do", deed, object, QString::number(patienceMs)});
        if (!finished.wait(endlessMs))
            return "hangs";
        return process.readAllStandardOutput();
    }

    QStringList startedWith(const QString &application) const
    {
        QFile file(path(application + ".args"));
        if (!file.open(QIODevice::ReadOnly))
            return {"not started"};
        QStringList arguments = QString(file.readAll()).split(QChar::Null);
        arguments.removeLast();
        return arguments;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QDir(m_folder.path()).mkpath("data/applications");
        QDir(m_folder.path()).mkpath("config");
        for (const char *variable : {"XDG_DATA_HOME", "XDG_DATA_DIRS"})
            m_environment.insert(variable, path("data"));
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
            m_environment.insert(variable, path("config"));
        for (const char *variable : {"XDG_CURRENT_DESKTOP", "GTK_USE_PORTAL"})
            m_environment.remove(variable);

        const QString program = QCoreApplication::applicationFilePath();
        QFile::link(program, path("linked"));
        for (const QString name : {"one", "two"}) {
            write(path(name), "#!/bin/sh\nprintf '%s\\0' \"$@\" >$0.part && mv $0.part $0.args\n");
            makeEntry(name, path(name) + " --flag %u");
        }
        makeEntry("tavelo", path("one") + " %u");
        makeEntry("twin", path("linked") + " %U");
        makeEntry("wrapped", "env A=b \"" + program + "\" %u");
        makeEntry("unstartable", path("one") + " %u", "Terminal=true");

        QVERIFY(m_bus.start());
    }

    void init()
    {
        m_environment.insert("DBUS_SESSION_BUS_ADDRESS", m_bus.address());
        for (const QString application : {"one", "two"})
            QFile::remove(path(application + ".args"));
    }

    void passesOverThisProgram_data()
    {
        const auto row = columns<QStringList, QString>("registered", "found");
        row("the default", {"two", "one"}, "two");
        row("our name", {"tavelo", "two", "one"}, "two");
        row("our program", {"twin", "wrapped", "one", "two"}, "one");
        row("only ourselves", {"wrapped", "twin", "tavelo"}, "none");
        row("removed since", {"gone", "one"}, "one");
        row("none", QStringList(), "none");
    }
    void passesOverThisProgram()
    {
        QFETCH(const QStringList, registered);
        registerFor(registered);
        QTEST(run("find", "magnet:?xt=urn:btih:0"), "found");
        QTEST(run("find", "/torrents/a.torrent"), "found");
    }

    void findsForMagnetsAndTorrentFilesOnly_data()
    {
        const auto row = columns<bool>("found");
        for (const char *address :
             {"magnet:?xt=urn:btih:0", "magnet:", "/a.torrent", "/a b/C#?.TORRENT",
              "file:///a.torrent", "file:///a%20b/%C3%BC%3F.torrent"})
            row(address, true);
        for (const char *address : {"Magnet:?xt=urn:btih:0",
                                    " magnet:?xt=urn:btih:0",
                                    "magnet",
                                    "",
                                    "javascript:alert(1)",
                                    "http://h/x.torrent",
                                    "https://h/",
                                    "ftp://h/x.torrent",
                                    "file:///etc/passwd",
                                    "/etc/passwd",
                                    "a.torrent",
                                    "../a.torrent",
                                    "file:a.torrent",
                                    "file://h/a.torrent",
                                    "file:///etc/passwd?.torrent",
                                    "file:///etc/passwd#.torrent",
                                    "file:///a.torrent%00",
                                    "file:///a%2F.torrent",
                                    "/a.torrent/",
                                    "/atorrent"})
            row(address, false);
    }
    void findsForMagnetsAndTorrentFilesOnly()
    {
        QFETCH(const bool, found);
        registerFor({"one"});
        const QString address = QTest::currentDataTag();
        QCOMPARE(run("find", address), found ? "one" : "none");
        QCOMPARE(run("open", address), found ? "done" : "refused");
        if (found)
            QTRY_VERIFY_WITH_TIMEOUT(startedWith("one").size() == 2, endlessMs);
    }

    void opensLetterForLetter_data()
    {
        const auto row = columns<QString, QString>("address", "argument");
        const QString magnet =
            "magnet:?xt=urn%3Abtih%3a00&dn=A%2D%41+b c'd\"e;$(touch f)`g`\\h|&%u%%i"
            "\tj\nk#ü%FF<>*?~!{}[]^&tr=http://h:80/a";
        row("magnet", magnet, magnet);
        const QString file = "/tmp/a b'c\"d;$(touch f)`g`\\h%2Di#j?%u ü.torrent";
        row("path", file, file);
        row("file address", "file:///a%20b%27%3B$(c)%252D.torrent", "/a b';$(c)%2D.torrent");
    }
    void opensLetterForLetter()
    {
        QFETCH(const QString, address);
        QFETCH(const QString, argument);
        registerFor({"tavelo", "two"});
        QCOMPARE(run("open", address), "done");
        QTRY_COMPARE_WITH_TIMEOUT(startedWith("two"), QStringList({"--flag", argument}), endlessMs);
        QCOMPARE(startedWith("one"), QStringList{"not started"});
    }

    void opensWebPages_data()
    {
        const auto row = columns<QString>("outcome");
        for (const char *address : {"http://h/x.torrent", "https://h:8/a%2Fb?c=%26#d"})
            row(address, "done");
        for (const char *address : {"", "h", "//h/", "https:///a", "http:h", "ftp://h/",
                                    "file:///etc/passwd", "javascript:alert(1)", "magnet:?xt=a"})
            row(address, "refused");
    }
    void opensWebPages()
    {
        QFETCH(const QString, outcome);
        registerFor({"twin", "tavelo", "one"});
        const QString address = QTest::currentDataTag();
        QCOMPARE(run("web", address), outcome);
        if (outcome == "done")
            QTRY_COMPARE_WITH_TIMEOUT(startedWith("one"), QStringList({"--flag", address}),
                                      endlessMs);
    }

    void saysWhatCannotBeDone()
    {
        registerFor({"tavelo"});
        const QString none = "failed: No application is registered for this";
        QCOMPARE(run("open", "magnet:?xt=a"), none);
        QCOMPARE(run("web", "https://h/"), none);
        QCOMPARE(run("show", "/a/b"), none);
        QCOMPARE(run("show", "a/b"), "refused");
        // No terminal is found.
        registerFor({"unstartable"});
        m_environment.insert("PATH", path("data"));
        const QString unstartable = run("open", "magnet:?xt=a");
        m_environment.insert("PATH", qEnvironmentVariable("PATH"));
        QVERIFY2(unstartable.startsWith("failed: ") && unstartable != none,
                 qPrintable(unstartable));
    }

    void showsInFileManager_data()
    {
        const auto row = columns<bool, bool, bool>("bus", "manager", "answers");
        row("answering", true, true, true);
        row("silent", true, true, false);
        row("none", true, false, false);
        row("no bus", false, false, false);
    }
    void showsInFileManager()
    {
        QFETCH(const bool, bus);
        QFETCH(const bool, manager);
        QFETCH(const bool, answers);
        FakeFileManager fake;
        fake.answers = answers;
        auto connection = QDBusConnection::connectToBus(m_bus.address(), "test");
        QVERIFY(connection.registerObject("/org/freedesktop/FileManager1", &fake,
                                          QDBusConnection::ExportAllSlots));
        if (manager)
            QVERIFY(connection.registerService("org.freedesktop.FileManager1"));
        const auto gone = qScopeGuard([] { QDBusConnection::disconnectFromBus("test"); });
        registerFor({"tavelo", "one"});
        if (!bus)
            m_environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path("nowhere"));

        QCOMPARE(run("show", "/a b/c#%2D.mp4", manager && !answers ? 50 : endlessMs), "done");
        QCOMPARE(fake.shown, manager ? QStringList{"file:///a%20b/c%23%252D.mp4"} : QStringList());
        if (answers)
            QCOMPARE(startedWith("one"), QStringList{"not started"});
        else
            QTRY_COMPARE_WITH_TIMEOUT(startedWith("one"), QStringList({"--flag", "/a b"}),
                                      endlessMs);
    }

    void tellsWhetherTheLineIsMetered_data()
    {
        const auto row = columns<QString, std::optional<uint>, QString>("bus", "answer", "line");
        row("unknown", "system", 0u, "free");
        row("yes", "system", 1u, "metered");
        row("no", "system", 2u, "free");
        row("it seems so", "system", 3u, "metered");
        row("it seems not", "system", 4u, "free");
        row("silent", "system", {}, "free");
        row("nobody to ask", "empty", {}, "free");
        row("no bus", "none", {}, "free");
    }
    void tellsWhetherTheLineIsMetered()
    {
        QFETCH(const QString, bus);
        FakeNetworkManager fake;
        QFETCH(const std::optional<uint>, answer);
        fake.metered = answer;
        auto connection = QDBusConnection::connectToBus(m_bus.address(), "test");
        QVERIFY(connection.registerVirtualObject("/org/freedesktop/NetworkManager", &fake));
        if (bus == "system")
            QVERIFY(connection.registerService("org.freedesktop.NetworkManager"));
        const auto gone = qScopeGuard([] { QDBusConnection::disconnectFromBus("test"); });
        m_environment.insert("DBUS_SYSTEM_BUS_ADDRESS",
                             bus == "none" ? "unix:path=" + path("nowhere") : m_bus.address());
        QTEST(run("line", {}), "line");
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == "--do") {
        std::fputs(qPrintable(done(arguments[2], arguments[3], arguments[4].toInt())), stdout);
        return 0;
    }
    TestWorkspace test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_workspace.moc"
