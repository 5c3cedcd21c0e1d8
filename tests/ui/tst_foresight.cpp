// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"
#include "WindowTest.h"
#include "testlib/Table.h"

#include <QFile>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

constexpr int patience = 10'000; // milliseconds
constexpr int quiet = 800;       // for what must not come

QByteArray film()
{
    QFile file(TAVELO_CLIPS "/heavy.mov");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool isForFilm(const HttpService::Request &request)
{
    return request.target.startsWith("/download/");
}

qsizetype requests(const QByteArray &id)
{
    return Program::server().count(
        [=](const auto &request) { return request.target.startsWith("/download/" + id + '/'); });
}

/// A film has an address of its own in each test, for what is held of one is held.
QByteArray serveFilm(HttpService::Answer answer = {})
{
    static int number = 100;
    const QByteArray id = "film" + QByteArray::number(++number);
    Program::serveFiles(id, {"reel.mov"});
    answer.body = film();
    answer.ranges = true;
    answer.etag = "\"" + id + "\"";
    Program::server().serve("/download/" + id + "/reel.mov", answer);
    return id;
}

MediaItem itemOf(const QByteArray &id)
{
    MediaItem item;
    item.id = id;
    item.title = "Item " + id;
    return item;
}

HistoryEntry watched(const QByteArray &id, double position)
{
    HistoryEntry entry = Program::watched(0, position, 60);
    entry.itemID = id;
    entry.key = id + "|reel.mov";
    entry.title = "Item " + id;
    entry.source = Program::server().base() + "/download/" + id + "/reel.mov";
    return entry;
}

/// Until nothing more is on its way of what has been asked for.
bool settled()
{
    qsizetype seen = -1;
    return QTest::qWaitFor(
        [&] {
            const bool same = std::exchange(seen, Program::server().requests().size()) ==
                              Program::server().requests().size();
            QTest::qWait(100);
            return same && Program::server().openRequests() == 0;
        },
        patience);
}

} // namespace

/// What is fetched of a film before anybody plays it.
class tst_Foresight : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSheetHasAllThatPlayNeeds_data()
    {
        const auto row = columns<double>("position");
        row("from the start", 0.0);
        row("from where it was left", 40.0);
    }
    void theSheetHasAllThatPlayNeeds()
    {
        QFETCH(double, position);
        Program program;
        QVERIFY(program.show());
        const QByteArray id = serveFilm();
        if (position > 0)
            program.state().library()->record(watched(id, position));
        program.state().selectItem(itemOf(id));
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Play"), patience);
        QTRY_VERIFY_WITH_TIMEOUT(requests(id) > 0, 400);
        QVERIFY(settled());
        const QByteArray path = "/download/" + id + "/reel.mov";
        QVERIFY(Program::server().count([](const auto &request) {
            return isForFilm(request) && !request.target.contains("cnt=0");
        }) == 0);

        Program::server().at(path).silent = true; // not a byte more
        QVERIFY(program.click("Play"));
        QTRY_VERIFY_WITH_TIMEOUT(program.player().player()->hasArrived(), patience);
        QVERIFY(std::abs(program.player().player()->currentTime() - position) < 1);
        // What counts as a view is asked for all the same.
        QTRY_VERIFY_WITH_TIMEOUT(Program::server().count([](const auto &request) {
            return isForFilm(request) && !request.target.contains("cnt=0");
        }) == 1,
                                 patience);
    }

    void whatNobodyWaitsForIsNotFetched_data()
    {
        const auto row = columns<bool, bool>("metered", "restricted");
        row("a metered line", true, false);
        row("a film that cannot be played", false, true);
    }
    void whatNobodyWaitsForIsNotFetched()
    {
        QFETCH(bool, metered);
        QFETCH(bool, restricted);
        Program program;
        QVERIFY(program.show());
        program.workspace().metered = metered;
        const QByteArray id = serveFilm();
        Program::serveFiles(id, {"reel.mov"}, restricted);
        program.state().library()->record(watched(id, 40));
        program.state().selectItem(itemOf(id));
        QTRY_VERIFY_WITH_TIMEOUT(program.text("Item " + id), patience);
        QVERIFY(!QTest::qWaitFor([&] { return requests(id) > 0; }, quiet));
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.state().selectedItem());
        if (restricted)
            return;
        QTest::mouseMove(program.window(), Program::middleOf(program.control("Item " + id)));
        QVERIFY(!QTest::qWaitFor([&] { return requests(id) > 0; }, quiet));
    }

    void anotherNodeHasTheFilm_data()
    {
        const auto row = columns<bool, QString>("metered", "file");
        row("that was prepared", false, "first.mov");
        row("over a metered line", true, "first.mov");
        row("that was not the first", false, "second.mov");
    }
    void anotherNodeHasTheFilm()
    {
        QFETCH(bool, metered);
        QFETCH(QString, file);
        Program program;
        QVERIFY(program.show());
        program.workspace().metered = metered;
        HttpService node("127.0.0.2");
        const QByteArray id = serveFilm({.status = 503});
        const QByteArray dir = "/3/items/" + id;
        node.serve(dir + '/' + file.toUtf8(), {.body = film(), .ranges = true});
        QByteArray metadata =
            "{'metadata':{},'server':'127.0.0.2:" + QByteArray::number(node.url("/").port()) +
            "','dir':'" + dir + "','files':[{'name':'first.mov'},{'name':'second.mov'}]}";
        Program::server().serve("/metadata/" + id, {.body = metadata.replace('\'', '"')});
        program.state().selectItem(itemOf(id));
        QTRY_VERIFY_WITH_TIMEOUT(program.countControls("Play") == 2, patience);
        program.keys(QList<Qt::Key>(file == "second.mov" ? 2 : 1, Qt::Key_Down));
        program.key(Qt::Key_Return);
        QTRY_VERIFY(program.state().showPlayer());
        QTRY_VERIFY_WITH_TIMEOUT(program.player().player()->hasArrived(), patience);
    }

    void theClosedSheetStopsIt()
    {
        Program program;
        QVERIFY(program.show());
        const QByteArray id = serveFilm({.bytesPerSecond = 50'000});
        program.state().selectItem(itemOf(id));
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Play"), patience);
        QTRY_VERIFY_WITH_TIMEOUT(requests(id) > 0, 400);
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.state().selectedItem());
        QTRY_COMPARE(Program::server().openRequests(), 0);
        const qsizetype before = requests(id);
        QVERIFY(!QTest::qWaitFor([&] { return requests(id) > before; }, quiet));
    }

    void aCardIsRestedOn_data() { Program::mouseAndKeys(); }
    void aCardIsRestedOn()
    {
        QFETCH(bool, byKeys);
        Program program;
        QVERIFY(program.show());
        const QByteArray passed = serveFilm();
        const QByteArray rested = serveFilm();
        program.state().library()->record(watched(rested, 40));
        program.state().library()->record(watched(passed, 40));
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Item " + passed), patience);
        QTRY_VERIFY_WITH_TIMEOUT(!program.state().popular().isEmpty(), patience);
        QVERIFY(settled());
        const qint64 before = Program::server().bytesSent();
        if (byKeys) {
            program.keys({Qt::Key_Down, Qt::Key_Right});
        } else {
            for (const QByteArray &id : {passed, rested})
                QTest::mouseMove(program.window(),
                                 Program::middleOf(program.control("Item " + id)));
        }
        QTRY_VERIFY_WITH_TIMEOUT(requests(rested) > 0, patience);
        QVERIFY(settled());
        QCOMPARE(requests(passed), 0);
        const qint64 sent = Program::server().bytesSent() - before;
        QVERIFY2(sent > 64 * 1024 && sent <= 512 * 1024, QByteArray::number(sent));
    }
};

TAVELO_WINDOW_TEST(tst_Foresight)
#include "tst_foresight.moc"
