// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/CurlFetch.h"
#include "testlib/Table.h"
#include "transfers/DownloadManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

#include <unistd.h>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

using Answer = HttpService::Answer;
using Finished = DownloadTask::Finished;

constexpr int places = 20;
constexpr int patience = 20'000;
constexpr qint64 filmBytes = 200'000;
constexpr qint64 longFilmBytes = 12LL * 1024 * 1024;
constexpr qint64 mostFetchedAgain = 8LL * 1024 * 1024;

Answer film(quint32 seed, qint64 size, const QByteArray &etag = "\"first\"")
{
    Answer answer{.etag = etag, .ranges = true};
    answer.source = HttpAnswer::Source::pattern(size, seed);
    return answer;
}

QByteArray bytesOf(const Answer &answer)
{
    return answer.source->bytes(0, answer.source->size);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A server of its own, for each is left alone by itself when it asks for that.
struct Place
{
    int number;
    qint64 offset; // where the fault is
    Answer good;
    QByteArray expected = {}; // what is saved in the end
    HttpService server = {};

    Place(int which, qint64 size)
        : number(which)
        , offset(which * (size - 1) / (places - 1))
        , good(film(quint32(which), size))
        , expected(bytesOf(good))
    {}
    Q_DISABLE_COPY_MOVE(Place)

    QUrl url() const { return server.url(path()); }
    QByteArray path() const { return "/film-" + QByteArray::number(number) + ".mp4"; }

    /// The first answer breaks off; those after it are `rest`.
    void cutThen(const std::function<Answer(const HttpRequest &)> &rest)
    {
        Answer cut = good;
        cut.cutAfter = offset;
        server.serveBy(path(), [cut, rest](const HttpRequest &request) {
            return request.ordinal == 1 ? cut : rest(request);
        });
    }
    void serveAnother(const Answer &other)
    {
        expected = bytesOf(other);
        cutThen([other](const HttpRequest &) { return other; });
    }
};

void prepare(Place &place, const QString &fault)
{
    const Answer good = place.good;
    Answer odd = good;
    if (fault == "truncated") {
        place.serveAnother(film(quint32(place.number), filmBytes * 2 / 3, "\"second\""));
    } else if (fault == "changed") {
        place.serveAnother(film(quint32(100 + place.number), filmBytes, "\"second\""));
    } else if (fault == "silence" || fault == "restart") {
        odd.silentAfter = place.offset;
        place.server.serveBy(place.path(), [odd, good](const HttpRequest &request) {
            return request.ordinal == 1 ? odd : good;
        });
    } else if (fault == "full disk") {
        place.server.serve(place.path(), good);
    } else {
        if (fault == "200 on a range")
            odd.ranges = false;
        if (fault == "wrong Content-Range")
            odd.contentRange = "bytes 5-199999/200000";
        if (fault.toInt() > 0)
            odd = {.body = "no", .status = fault.toInt()};
        const bool isForRange = fault == "416"; // for the whole file it is final
        place.cutThen([=](const HttpRequest &request) {
            return request.ordinal == 2 && (!isForRange || request.headers.contains("range"))
                       ? odd
                       : good;
        });
    }
}

/// What the process does that is killed: it goes on with what there is, and starts these.
[[noreturn]] void downloadForever(const QStringList &urls)
{
    SettingsStore settings;
    CurlFetch fetch;
    DownloadManager downloads(settings, fetch, {.mostAtOnce = places});
    for (const QString &url : urls)
        (void)downloads.start("T", QUrl(url), {});
    const auto tell = [&downloads] {
        for (const DownloadTask &task : downloads.tasks())
            std::printf("%s %lld\n", qPrintable(task.url.fileName()), task.received);
        std::puts(".");
        std::fflush(stdout);
    };
    QObject::connect(&downloads, &DownloadManager::tasksChanged, tell);
    tell();
    QCoreApplication::exec();
    std::abort();
}

} // namespace

/// Each fault at twenty places of a file, all at once: nothing is lost, nothing wrong is saved, and
/// each row says what goes on.
class tst_DownloadFaults : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    SettingsStore *m_settings = nullptr;
    std::vector<std::unique_ptr<Place>> m_places;

    void makePlaces(qint64 size)
    {
        m_places.clear();
        for (int i = 0; i < places; ++i)
            m_places.push_back(std::make_unique<Place>(i, size));
    }
    const Place &placeOf(const DownloadTask &task) const
    {
        return **std::ranges::find_if(m_places,
                                      [&](const auto &place) { return place->url() == task.url; });
    }

private Q_SLOTS:
    void initTestCase()
    {
        StandardFolders::relocate(m_folder.path());
        m_settings = new SettingsStore(this);
    }

    void faults_data()
    {
        // said: by each row, at some time
        const auto row = columns<QString, bool>("said", "startsOver");
        row("drop", "The connection ended before the file did, next try in 1 s", false);
        row("silence", "The server stopped answering, next try in 1 s", false);
        row("truncated", "The connection ended before the file did, next try in 1 s", true);
        row("changed", "The connection ended before the file did, next try in 1 s", true);
        row("416", "The connection ended before the file did, next try in 1 s", true);
        row("200 on a range", "The connection ended before the file did, next try in 1 s", false);
        row("wrong Content-Range", "The connection ended before the file did, next try in 1 s",
            false);
        row("429", "The server asks to wait, next try in 1 s", false);
        row("503", "The server asks to wait, next try in 1 s", false);
        row("refused", "Connection refused, next try in 1 s", false);
        row("full disk", "The disk is full. Make room, then try again.", false);
        row("restart", "Saved to " + StandardFolders::movies(), false);
    }

    void faults()
    {
        const QString fault = QTest::currentDataTag();
        QFETCH(QString, said);
        QFETCH(bool, startsOver);
        makePlaces(filmBytes);
        DownloadOptions options{.mostAtOnce = places, .firstPause = 50ms};
        std::atomic<bool> isFull = fault == "full disk";
        if (fault == "silence")
            options.transfer.silenceLimit = 500ms;
        options.transfer.write = [&](int file, const void *bytes, size_t count, off_t at) {
            errno = ENOSPC;
            return isFull && at + off_t(count) > filmBytes / 2 ? -1
                                                               : pwrite(file, bytes, count, at);
        };
        CurlFetch fetch;
        auto downloads = std::make_unique<DownloadManager>(*m_settings, fetch, options);
        QHash<QUuid, QStringList> told;
        const auto listen = [&] {
            connect(downloads.get(), &DownloadManager::tasksChanged, this, [&] {
                for (const DownloadTask &task : downloads->tasks())
                    told[task.id].append(task.status());
            });
        };
        listen();
        for (const auto &place : m_places) {
            prepare(*place, fault);
            QVERIFY(!downloads->start("T", place->url(), {}));
        }
        const auto all = [&](const std::function<bool(const DownloadTask &)> &holds) {
            const QList<DownloadTask> tasks = downloads->tasks();
            return tasks.size() == places && std::ranges::all_of(tasks, holds);
        };
        if (fault == "restart") {
            QTRY_VERIFY_WITH_TIMEOUT(
                all([&](const auto &task) { return task.received == placeOf(task).offset; }),
                patience);
            downloads = std::make_unique<DownloadManager>(*m_settings, fetch, options);
            listen();
        }
        if (fault == "refused") {
            for (const auto &place : m_places)
                QTRY_VERIFY(!place->server.requests().isEmpty());
            for (const auto &place : m_places)
                place->server.setListening(false);
            QTRY_VERIFY_WITH_TIMEOUT(
                all([&](const auto &task) { return told[task.id].contains(said); }), patience);
            for (const auto &place : m_places)
                place->server.setListening(true);
        }
        if (fault == "full disk") {
            QTRY_VERIFY_WITH_TIMEOUT(
                all([&](const auto &task) { return task.template is<DownloadTask::Held>(); }),
                patience);
            isFull = false;
            const QList<DownloadTask> held = downloads->tasks();
            for (const DownloadTask &task : held)
                downloads->resume(task.id);
        }
        QTRY_VERIFY_WITH_TIMEOUT(all([](const auto &task) { return task.template is<Finished>(); }),
                                 patience);
        for (const DownloadTask &task : downloads->tasks()) {
            const Place &place = placeOf(task);
            QVERIFY(contentOf(task.dest) == place.expected);
            QVERIFY2(told[task.id].contains(said), qPrintable(told[task.id].join('\n')));
            QCOMPARE(task.startedOver, startsOver && place.offset > 0);
            QVERIFY(QFile::remove(task.dest));
        }
        downloads->clearFinished();
        QCOMPARE(QDir(m_settings->downloadsPath()).entryList(QDir::Files | QDir::Hidden),
                 QStringList());
    }

    void kill9()
    {
        makePlaces(longFilmBytes);
        QStringList urls;
        for (const auto &place : m_places) {
            Answer first = place->good;
            first.silentAfter = place->offset;
            Answer good = place->good;
            good.bytesPerSecond = 10'000'000; // so that there is something left to kill
            place->server.serveBy(place->path(), [first, good](const HttpRequest &request) {
                return request.ordinal == 1 ? first : good;
            });
            urls.append(place->url().toString());
        }
        runAndKill(urls, [this](const QHash<QString, qint64> &received) {
            return std::ranges::all_of(m_places, [&](const auto &place) {
                return received.value(place->url().fileName()) == place->offset;
            });
        });
        QRandomGenerator random(5);
        for (int kill = 0; kill < 4; ++kill) {
            const int lines = random.bounded(60);
            runAndKill({}, [lines, seen = 0](const auto &received) mutable {
                return ++seen > lines || std::ranges::all_of(received, [](qint64 bytes) {
                    return bytes == longFilmBytes;
                });
            });
        }
        CurlFetch fetch;
        DownloadManager downloads(*m_settings, fetch, {.mostAtOnce = places});
        QTRY_VERIFY_WITH_TIMEOUT(
            downloads.tasks().size() == places &&
                std::ranges::all_of(downloads.tasks(), &DownloadTask::isFinished),
            patience);
        for (const auto &place : m_places) {
            QVERIFY(contentOf(m_settings->downloadsPath() + place->path()) == place->expected);
            const auto &requests = place->server.requests();
            if (requests.size() < 2)
                continue; // it was whole before the first kill
            const QByteArray range = requests[1].headers.value("range");
            const qint64 from = range.isEmpty() ? 0 : range.mid(6).chopped(1).toLongLong();
            QVERIFY2(place->offset - from <= mostFetchedAgain, range.constData());
        }
        QCOMPARE(
            QDir(m_settings->downloadsPath()).entryList({".tavelo*"}, QDir::Files | QDir::Hidden),
            QStringList());
    }

private:
    /// Kills the other process when `isTime` for what it has told last; it tells again and again.
    void runAndKill(const QStringList &urls,
                    std::function<bool(const QHash<QString, qint64> &)> isTime)
    {
        QProcess process;
        QHash<QString, qint64> received;
        bool isOver = false;
        connect(&process, &QProcess::readyRead, this, [&] {
            while (process.canReadLine() && !isOver) {
                const QList<QByteArray> words = process.readLine().trimmed().split(' ');
                if (words.size() == 2)
                    received[words[0]] = words[1].toLongLong();
                else
                    isOver = isTime(received);
            }
        });
        process.start(QCoreApplication::applicationFilePath(),
                      QStringList{"--download", m_folder.path()} + urls);
        const bool isDone = QTest::qWaitFor([&] { return isOver; }, patience);
        if (!isDone)
            qWarning() << received << process.readAllStandardError();
        process.kill();
        QVERIFY(process.waitForFinished() && isDone);
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == "--download") {
        StandardFolders::relocate(arguments[2]);
        downloadForever(arguments.sliced(3));
    }
    tst_DownloadFaults test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_downloadfaults.moc"
