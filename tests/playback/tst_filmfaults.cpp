// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "platform/files/StandardFolders.h"
#include "platform/media/MediaEngine.h"
#include "platform/media/film/Films.h"
#include "playback/PlaybackCoordinator.h"
#include "testlib/Table.h"

#include <QCoroTask>
#include <QCoroTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <vector>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

enum class Fault { Drop, Silence, Refused, TooMany, Unavailable, Changed, LateFirstByte };
enum class Moment { AtStart, Playing, SeekForward, SeekBack, Paused };
enum class Lasting { ForGood, TwelveSeconds, FortySeconds };

// In seconds.
constexpr double filmLength = 60;
constexpr double aheadOfFault = 3; // what arrives of the film before the fault shows
constexpr double tolerance = 0.5;
constexpr double tickInterval = 0.5; // of the player
const QByteArray path = "/heavy.mov";

QByteArray heavyFilm()
{
    QFile file(QStringLiteral(TAVELO_CLIPS "/heavy.mov"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// One film on a server of its own that fails at one moment. Many of them play at the same time.
class Scene
{
public:
    Scene(LibraryStore &library, const QByteArray &film, Fault fault, Moment moment,
          Lasting lasting)
        : m_library(library)
        , m_film(film)
        , m_fault(fault)
        , m_moment(moment)
        , m_lasting(lasting)
        , m_key(QStringLiteral("film|%1-%2-%3")
                    .arg(static_cast<int>(fault))
                    .arg(static_cast<int>(moment))
                    .arg(static_cast<int>(lasting)))
        , m_playback(library, [] { return MediaEngine::create({.headless = true}); })
    {
        m_running.emplace(run());
    }

    bool isOver() const { return m_running->isReady(); }
    /// What went wrong, a line each.
    QString complaints() const { return m_complaints.join('\n'); }

private:
    VideoPlayerManager &player() { return *m_playback.player(); }
    double shown() { return player().currentTime(); }
    double stored() const { return m_library.entryFor(m_key)->position; }
    bool goesOn() { return player().isPlaying() && !player().isBuffering() && !player().error(); }

    qint64 bytesUpTo(double seconds) const
    {
        const auto index = static_cast<double>(m_film.indexOf("mdat"));
        const auto pictures = static_cast<double>(m_film.size()) - index;
        return static_cast<qint64>(index + pictures * seconds / filmLength);
    }

    QCoro::Task<bool> until(const char *what, std::function<bool()> holds)
    {
        QElapsedTimer waited;
        waited.start();
        while (!holds()) {
            if (waited.hasExpired(60'000)) {
                m_complaints.append(QStringLiteral("waited in vain: ") + what);
                co_return false;
            }
            co_await QCoro::sleepFor(20ms);
        }
        co_return true;
    }

    /// `playing`: seconds that the film may have gone on from there.
    void compare(const char *what, double found, double playing = 0)
    {
        if (found < m_place - tolerance || found > m_place + tolerance + playing)
            m_complaints.append(
                QStringLiteral("%1: %2 instead of %3").arg(what).arg(found).arg(m_place));
    }

    void serveUpTo(double seconds)
    {
        m_server.serve(path, {.body = m_film, .etag = "\"first\"", .ranges = true});
        auto &end =
            m_fault == Fault::Silence ? m_server.at(path).silentAfter : m_server.at(path).cutAfter;
        end = bytesUpTo(seconds);
    }

    void strike()
    {
        m_sinceFault.start();
        auto &answer = m_server.at(path);
        if (m_fault == Fault::Drop)
            answer.cutAfter = 0;
        else if (m_fault == Fault::Silence)
            answer.silent = true;
        else if (m_fault == Fault::Refused)
            m_server.setListening(false);
        else if (m_fault == Fault::TooMany)
            answer.status = 429;
        else if (m_fault == Fault::Unavailable)
            answer.status = 503;
        else if (m_fault == Fault::Changed)
            answer = {.body = m_film, .etag = "\"second\"", .ranges = true};
        else
            answer = {.body = m_film, .etag = "\"first\"", .ranges = true, .delay = 10s};
    }

    /// The file that the index comes from is another one than that of the pictures.
    void strikeAfterTheFirstAnswer()
    {
        heal();
        m_sinceFault.start();
        QObject::connect(&m_server, &HttpService::requested, [this] {
            if (m_server.requests().size() == 2)
                strike();
        });
    }

    void heal()
    {
        m_server.setListening(true);
        m_server.serve(path, {.body = m_film, .etag = "\"first\"", .ranges = true});
    }

    void open(double startAt)
    {
        HistoryEntry entry;
        entry.key = m_key;
        entry.itemID = "film";
        entry.source = m_server.url(path).toString();
        entry.position = startAt;
        m_library.record(entry);
        m_playback.playEntry(entry);
    }

    /// Comes to the moment of the fault; from then on m_place is where the viewer is.
    QCoro::Task<> comeToTheFault()
    {
        const double start = m_moment == Moment::AtStart || m_moment == Moment::SeekBack ? 30 : 0;
        serveUpTo(m_moment == Moment::AtStart ? 0 : start + aheadOfFault);
        if (m_moment == Moment::AtStart) {
            m_place = start;
            if (m_fault == Fault::Changed)
                strikeAfterTheFirstAnswer();
            else
                strike();
            open(start);
            co_return;
        }
        open(start);
        co_await until("the film plays", [&] { return goesOn() && shown() > start + 0.9; });
        if (m_moment == Moment::Paused) {
            player().toggle();
            co_await until("the film is paused", [&] { return !player().isPlaying(); });
            m_place = shown();
        }
        strike();
        if (m_moment == Moment::Paused) {
            co_await QCoro::sleepFor(1s);
            compare("shown while paused", shown());
            compare("stored while paused", stored());
            player().toggle();
        }
        m_place = start + aheadOfFault;
        if (m_moment == Moment::SeekForward)
            player().seek(m_place = 45);
        if (m_moment == Moment::SeekBack)
            player().seek(m_place = 6);
    }

    QCoro::Task<> forGood()
    {
        co_await until("the film fails", [&] { return player().error().has_value(); });
        compare("shown", shown());
        compare("stored", stored());
        player().retry();
        co_await until("Retry comes to something", [&] { return player().error() || goesOn(); });
        compare("after Retry", shown());
    }

    /// Nobody presses Retry: the film goes on by itself when the server is back.
    QCoro::Task<> forAWhile()
    {
        const bool isShort = m_lasting == Lasting::TwelveSeconds;
        co_await until("the fault's end",
                       [&] { return m_sinceFault.hasExpired(isShort ? 12'000 : 40'000); });
        // Late bytes have come by now.
        const double since = m_fault == Fault::LateFirstByte ? 2 : 0;
        compare("shown", shown(), since);
        if (isShort == player().error().has_value())
            m_complaints.append(isShort ? "given up too early" : "the viewer is told nothing");
        if (player().error())
            compare("stored", stored());
        if (player().goesOnTrying() == isShort)
            m_complaints.append("the viewer is not told that it may end by itself");
        heal();
        co_await until("it goes on", [&] { return goesOn(); });
        compare("shown after the fault", shown(), since + tickInterval);
        co_await until("the film goes on", [&] { return goesOn() && shown() > m_place + 0.6; });
        m_place = shown();
    }

    QCoro::Task<> run()
    {
        co_await comeToTheFault();
        if (m_lasting == Lasting::ForGood)
            co_await forGood();
        else
            co_await forAWhile();
        m_playback.stopPlayback();
        compare("stored at the end", stored());
    }

    LibraryStore &m_library;
    const QByteArray &m_film;
    const Fault m_fault;
    const Moment m_moment;
    const Lasting m_lasting;
    const QString m_key;
    HttpService m_server;
    PlaybackCoordinator m_playback;
    QElapsedTimer m_sinceFault;
    double m_place = 0; // seconds: what the viewer last saw or asked for
    QStringList m_complaints;
    std::optional<QCoro::Task<>> m_running;
};

} // namespace

Q_DECLARE_METATYPE(Fault)
Q_DECLARE_METATYPE(Moment)
Q_DECLARE_METATYPE(Lasting)

/// The viewer's place in the film, on servers that fail in every way at every moment.
class TestFilmFaults : public QObject
{
    Q_OBJECT

private:
    const QByteArray m_film = heavyFilm();
    LibraryStore m_library;
    std::vector<std::unique_ptr<Scene>> m_scenes; // in the table's order

private Q_SLOTS:
    void keepsThePlace_data()
    {
        using enum Fault;
        const auto row = columns<int>("scene");
        constexpr std::pair<Moment, const char *> moments[] = {
            {Moment::AtStart, "at start"},
            {Moment::Playing, "playing"},
            {Moment::SeekForward, "after a seek forward"},
            {Moment::SeekBack, "after a seek back"},
            {Moment::Paused, "paused"},
        };
        constexpr std::pair<Fault, const char *> faults[] = {
            {Drop, "drop"},
            {Silence, "silence"},
            {Refused, "refused"},
            {TooMany, "429"},
            {Unavailable, "503"},
            {Changed, "changed file"},
            {LateFirstByte, "late first byte"},
        };
        constexpr std::pair<Lasting, const char *> lastings[] = {
            {Lasting::ForGood, "for good"},
            {Lasting::TwelveSeconds, "12 s"},
            {Lasting::FortySeconds, "40 s"},
        };
        int number = 0;
        for (const auto &[moment, momentName] : moments) {
            for (const auto &[fault, faultName] : faults) {
                for (const auto &[lasting, lastingName] : lastings) {
                    const bool once = fault == LateFirstByte || fault == Changed;
                    const auto its = fault == Changed ? Lasting::ForGood : Lasting::TwelveSeconds;
                    if (once && lasting != its)
                        continue;
                    row(qPrintable(
                            QStringLiteral("%1, %2, %3").arg(faultName, momentName, lastingName)),
                        number++);
                    m_scenes.push_back(
                        std::make_unique<Scene>(m_library, m_film, fault, moment, lasting));
                }
            }
        }
    }
    void keepsThePlace()
    {
        QFETCH(int, scene);
        Scene &one = *m_scenes[static_cast<std::size_t>(scene)];
        QTRY_VERIFY_WITH_TIMEOUT(one.isOver(), 150'000);
        QVERIFY2(one.complaints().isEmpty(), qPrintable(one.complaints()));
    }
    void cleanupTestCase()
    {
        m_scenes.clear();
        delete &Films::shared();
        QTest::qWait(1000); // other threads let go of what was on its way
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    StandardFolders::relocate(folder.path());
    TestFilmFaults test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_filmfaults.moc"
