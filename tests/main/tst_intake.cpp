// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/AppState.h"
#include "loopback/HttpService.h"
#include "main/Intake.h"
#include "main/SingleInstance.h"
#include "platform/files/FileContent.h"
#include "platform/files/StandardFolders.h"
#include "testlib/FakeWorkspace.h"
#include "testlib/Table.h"

#include <QDir>
#include <QGuiApplication>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QWindow>

#include <csignal>
#include <ctime>

using namespace tavelo;

namespace {

constexpr int patience = 30'000; // milliseconds

const QString magnet =
    "magnet:?xt=urn:btih:0123456789abcdef0123456789abcdef01234567&dn=Linked%20film";

QByteArray torrent(const QByteArray &name)
{
    return "d4:infod6:lengthi1e4:name" + QByteArray::number(name.size()) + ':' + name +
           "12:piece lengthi16384e6:pieces20:" + QByteArray(20, 'h') + "ee";
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

} // namespace

class tst_Intake : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    HttpService m_server;
    QStringList m_handed;
    int m_runs = 0;
    std::vector<std::unique_ptr<QProcess>> m_started;

    /// Starts the program for this test's configuration, in the folder with the torrents.
    QProcess &start(const QStringList &arguments, const QString &configuration = "one")
    {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_RUNTIME_DIR", runtime());
        environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + runtime() + "/no-bus");
        process->setProcessEnvironment(environment);
        process->setWorkingDirectory(m_folder.filePath("torrents"));
        process->start(QCoreApplication::applicationDirPath() + "/intake_host",
                       QStringList{folderOf(configuration)} + arguments);
        m_started.push_back(std::move(process));
        return *m_started.back();
    }

    QString runtime() const { return m_folder.filePath("run"); }
    QString folderOf(const QString &name) const
    {
        return m_folder.filePath(QString("%1-%2").arg(name).arg(m_runs));
    }
    QStringList sockets() const
    {
        return QDir(runtime()).entryList({"tavelo-*"}, QDir::System | QDir::Files);
    }
    static bool says(QProcess &process, const QByteArray &line)
    {
        return QTest::qWaitFor(
            [&] {
                process.setProperty("said", process.property("said").toByteArray() +
                                                process.readAllStandardOutput());
                return process.property("said").toByteArray().contains(line + '\n');
            },
            patience);
    }

private Q_SLOTS:
    void initTestCase()
    {
        StandardFolders::relocate(m_folder.filePath("own"));
        QDir().mkpath(m_folder.filePath("torrents/a.torrent.d"));
        QDir().mkpath(runtime());
        QFile::setPermissions(runtime(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QDir torrents(m_folder.filePath("torrents"));
        write(torrents.filePath("small.torrent"), torrent("Small film"));
        write(torrents.filePath("CAPITAL.TORRENT"), torrent("Capital film"));
        write(torrents.filePath("odd: 100% #1?.torrent"), torrent("Odd film"));
        write(torrents.filePath("text.torrent"), "not bencoded");
        write(torrents.filePath("film.mp4"), torrent("No torrent by its name"));
        m_server.serve("/far.torrent", {.body = torrent("Far film")});
    }

    void init() { ++m_runs; }

    void cleanup()
    {
        for (const auto &process : m_started) {
            process->kill();
            process->waitForFinished();
        }
        m_started.clear();
        for (const QString &name : QDir(runtime()).entryList(QDir::System | QDir::Files))
            QFile::remove(runtime() + '/' + name);
    }

    void opens_data()
    {
        const auto row = columns<QString, QString, QString>("argument", "inspected", "notice");
        const QString none;
        const QString folder = m_folder.filePath("torrents/");
        const auto fileURL = [&](const char *name) {
            return QUrl::fromLocalFile(folder + name).toString(QUrl::FullyEncoded);
        };
        row("magnet link", magnet, "Linked film", none);
        row("bad magnet link", "magnet:?dn=x", none, "That doesn't look like a valid magnet link.");
        row("capital scheme", "MAGNET" + magnet.mid(6), none, none);
        row("relative path", "small.torrent", "Small film", none);
        row("path from above", "../torrents/small.torrent", "Small film", none);
        row("absolute path", folder + "small.torrent", "Small film", none);
        row("file URL", fileURL("small.torrent"), "Small film", none);
        row("capital extension", "CAPITAL.TORRENT", "Capital film", none);
        row("characters of URLs", "odd: 100% #1?.torrent", "Odd film", none);
        row("the same as a URL", fileURL("odd: 100% #1?.torrent"), "Odd film", none);
        row("far file", m_server.base() + "/far.torrent?key=1", "Far film", none);
        row("no torrent", "text.torrent", none, "Couldn't read torrent: Not a valid .torrent file");
        row("other file", "film.mp4", none, none);
        row("other page", m_server.base() + "/torrent", none, none);
        row("option", "--help", none, none);
        row("nothing", "", none, none);
    }

    void opens()
    {
        QFETCH(QString, argument);
        QFETCH(QString, inspected);
        QFETCH(QString, notice);
        AppState state([] { return nullptr; }, std::make_unique<FakeWorkspace>(m_handed));
        const auto shown = [&] { return state.inspector() ? state.inspector()->name : QString(); };
        const QString folder = m_folder.filePath("torrents");
        for (const QString &address : Intake::addresses({argument}, folder))
            Intake::open(state, address);
        // A file that comes after the others shows that nothing more is to come.
        QTRY_COMPARE(shown(), inspected);
        QTRY_COMPARE(state.noticeText(), notice);
        if (inspected.isEmpty() && notice.isEmpty()) {
            Intake::open(state, Intake::addresses({"small.torrent"}, folder).first());
            QTRY_COMPARE(shown(), "Small film");
            QCOMPARE(state.noticeText(), "");
        }
    }

    void theLastOfSeveralStays()
    {
        AppState state([] { return nullptr; }, std::make_unique<FakeWorkspace>(m_handed));
        const QString folder = m_folder.filePath("torrents");
        for (const QString &address :
             Intake::addresses({"small.torrent", magnet, "text.torrent"}, folder))
            Intake::open(state, address);
        QTRY_VERIFY(state.notice());
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QCOMPARE(state.inspector()->name, "Linked film");
    }

    void missingFile()
    {
        AppState state([] { return nullptr; }, std::make_unique<FakeWorkspace>(m_handed));
        Intake::open(state, Intake::addresses({"gone.torrent"}, m_folder.path()).first());
        QTRY_VERIFY(state.noticeText().startsWith("Couldn't read torrent: "));
        QVERIFY(!state.inspector());
    }

    void launchOpensItsArguments()
    {
        QProcess &first = start({magnet, "small.torrent"});
        QVERIFY(says(first, "inspector Small film"));
        QVERIFY(says(first, "inspector Linked film"));
    }

    void logsWhenAsked()
    {
        QProcess &program = start({"--log=app,storage", "small.torrent"});
        QVERIFY(says(program, "inspector Small film"));
        const QByteArray told = program.readAllStandardError();
        QVERIFY2(told.contains(" tavelo.app Tavelo "), told.constData());
        QVERIFY2(!told.contains("tavelo.http"), told.constData());
        QFile file(folderOf("one") + "/data/TaveloApp/Cache/tavelo.log");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().startsWith(told));

        QProcess &silent = start({"small.torrent"}, "other");
        QVERIFY(says(silent, "inspector Small film"));
        QVERIFY(!silent.readAllStandardError().contains("tavelo."));
    }

    void secondStartHandsOver()
    {
        QProcess &first = start({});
        QVERIFY(says(first, "shown "));
        for (const auto &[argument, line] :
             {std::pair{magnet, "inspector Linked film"},
              {"small.torrent", "inspector Small film"},
              {"text.torrent", "notice Couldn't read torrent: Not a valid .torrent file"}}) {
            QProcess &second = start({argument});
            QVERIFY(second.waitForFinished(patience));
            QCOMPARE(second.exitCode(), 0);
            QVERIFY(second.readAllStandardOutput().isEmpty());
            QVERIFY2(says(first, line), line);
        }
        QVERIFY(says(start({}, "another configuration"), "shown "));
    }

    void secondStartBringsTheFirstForward()
    {
        QProcess &first = start({});
        QVERIFY2(says(first, "front "), first.property("said").toByteArray());
        QWindow other;
        other.show();
        other.requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(says(first, "back "));
        first.setProperty("said", {});
        // A launcher names the moment of the user's click, in the display's time.
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        const auto time = static_cast<quint32>(now.tv_sec * 1000 + now.tv_nsec / 1'000'000);
        qputenv("DESKTOP_STARTUP_ID", "launcher_TIME" + QByteArray::number(time));
        QProcess &second = start({});
        qunsetenv("DESKTOP_STARTUP_ID");
        QVERIFY(second.waitForFinished(patience));
        QVERIFY(says(first, "front "));
    }

    void deadOnesSocketIsTakenOver()
    {
        QProcess &first = start({});
        QVERIFY(says(first, "shown "));
        first.kill();
        QVERIFY(first.waitForFinished(patience));
        QVERIFY(!sockets().isEmpty());
        QProcess &second = start({magnet});
        QVERIFY(says(second, "inspector Linked film"));
        QVERIFY(start({"small.torrent"}).waitForFinished(patience));
        QVERIFY(says(second, "inspector Small film"));
    }

    void oneThatHangsIsNotDoubled()
    {
        QProcess &first = start({});
        QVERIFY(says(first, "shown "));
        ::kill(static_cast<pid_t>(first.processId()), SIGSTOP);
        QProcess &second = start({magnet});
        QVERIFY(second.waitForFinished(patience));
        QCOMPARE(second.exitCode(), 1);
        QVERIFY(second.readAllStandardError().contains("does not answer"));
    }

    void endsInOrderWhenAsked_data()
    {
        const auto row = columns<int>("signal");
        row("by the session", SIGTERM);
        row("from the terminal", SIGINT);
        row("without one", SIGHUP);
    }
    void endsInOrderWhenAsked()
    {
        QFETCH(int, signal);
        qputenv("TAVELO_FILM", TAVELO_CLIPS "/long.mp4");
        QProcess &program = start({});
        qunsetenv("TAVELO_FILM");
        double reached = 0;
        QVERIFY(QTest::qWaitFor(
            [&] {
                while (program.canReadLine()) {
                    const QByteArray line = program.readLine();
                    if (line.startsWith("time "))
                        reached = line.mid(5).toDouble();
                }
                return reached > 1.6;
            },
            patience));
        ::kill(static_cast<pid_t>(program.processId()), signal);
        QVERIFY(program.waitForFinished(patience));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        const QString history = folderOf("one") + "/data/TaveloApp/history.json";
        const auto entries = historyFromJson(FileContent::read(history, 100'000));
        QVERIFY(entries && entries->whole.size() == 1);
        QVERIFY(entries->whole.first().position >= reached);
    }

    void strangeCallers_data()
    {
        const auto row = columns<QByteArray>("message");
        row("no JSON", "hello\n");
        row("no list", "{\"addresses\":1}\n");
        row("too long", QByteArray(2 * 1024 * 1024, 'x'));
    }

    void strangeCallers()
    {
        QFETCH(QByteArray, message);
        SingleInstance first(runtime(), folderOf("one"));
        QStringList heard;
        connect(&first, &SingleInstance::called,
                [&](const SingleInstance::Call &call) { heard = call.addresses; });
        QCOMPARE(first.claim({}), SingleInstance::Role::First);
        const QString path = runtime() + '/' + sockets().filter(QRegularExpression("[0-9a-f]$"))[0];
        const auto others =
            QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QVERIFY(!(QFile::permissions(path) & others));

        QLocalSocket stranger;
        stranger.connectToServer(path);
        stranger.write(message);
        QTRY_COMPARE(stranger.state(), QLocalSocket::UnconnectedState);
        QVERIFY(stranger.readAll().isEmpty());
        QLocalSocket known;
        known.connectToServer(path);
        known.write("{\"addresses\":[\"a\",\"b\"]}\n");
        QTRY_COMPARE(heard, QStringList({"a", "b"}));
        QTRY_COMPARE(known.bytesAvailable(), 6);
        QCOMPARE(known.readAll(), "taken\n");
    }
};

QTEST_MAIN(tst_Intake)
#include "tst_intake.moc"
