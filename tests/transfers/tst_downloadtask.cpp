// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "testlib/Table.h"
#include "transfers/DownloadTask.h"

#include <QTest>

using namespace tavelo;

using Task = DownloadTask;

/// What the screens say of a download.
class tst_DownloadTask : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void states_data()
    {
        const auto row = columns<DownloadTask, double, QString>("task", "progress", "status");
        const auto task = [](qint64 received, qint64 expected, const Task::State &state) {
            Task made;
            made.dest = "/films/of mine/a film.mp4";
            made.received = received;
            made.expected = expected;
            made.state = state;
            return made;
        };
        const auto fast = [&](qint64 speed, std::optional<qint64> secondsLeft) {
            Task made = task(250'000, 1'000'000, Task::Downloading{});
            made.speed = speed;
            made.secondsLeft = secondsLeft;
            return made;
        };
        row("waiting", task(0, 5, Task::Waiting{}), 0, "Waiting");
        row("waiting again", task(1, 5, Task::Waiting{}), 0.2, u"Waiting · 1 bytes of 5 bytes"_qs);
        row("running", fast(0, {}), 0.25, "250.0 kB of 1.0 MB");
        row("size not known", task(250'000, 0, Task::Downloading{}), 0, u"250.0 kB of —"_qs);
        row("more than expected", task(3000, 2000, Task::Downloading{}), 1, "3.0 kB of 2.0 kB");
        row("sizes negative", task(-1, -1, Task::Downloading{}), 0, u"— of —"_qs);
        row("seconds", fast(2'100'000, 59), 0.25, u"250.0 kB of 1.0 MB · 2.1 MB/s · 59 s left"_qs);
        row("minutes", fast(900, 179), 0.25, u"250.0 kB of 1.0 MB · 900 bytes/s · 3 min left"_qs);
        row("hours", fast(900, 7259), 0.25,
            u"250.0 kB of 1.0 MB · 900 bytes/s · 2 h 0 min left"_qs);
        Task anew = fast(900, {});
        anew.startedOver = true;
        row("file changed", anew, 0.25,
            u"250.0 kB of 1.0 MB · started over, for the file had changed · 900 bytes/s"_qs);
        row("asked to wait", task(1, 2, Task::Retrying{"The Internet Archive asks to wait", 20}),
            0.5, "The Internet Archive asks to wait, next try in 20 s");
        row("after a failure", task(1, 2, Task::Retrying{"The server stopped answering.", 1}), 0.5,
            "The server stopped answering, next try in 1 s");
        row("paused", task(500, 1000, Task::Paused{}), 0.5, u"500 bytes of 1.0 kB · paused"_qs);
        row("held", task(1, 2, Task::Held{"The disk is full."}), 0.5, "The disk is full.");
        row("checking", task(2, 2, Task::Checking{}), 1, "Checking");
        row("finished", task(2, 2, Task::Finished{}), 1, "Saved to /films/of mine");
        row("checked", task(2, 2, Task::Finished{true}), 1,
            u"Saved to /films/of mine · Checked"_qs);
        row("failed", task(0, 0, Task::Failed{"HTTP 404"}), 0, "Failed: HTTP 404");
    }

    void states()
    {
        QFETCH(DownloadTask, task);
        QTEST(task.status(), "status");
        QTEST(task.progress(), "progress");
        QCOMPARE(task.tip().isEmpty(), !task.status().endsWith("Checked"));
    }
};

QTEST_GUILESS_MAIN(tst_DownloadTask)
#include "tst_downloadtask.moc"
