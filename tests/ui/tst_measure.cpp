#include "Program.h"
#include "WindowTest.h"
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <algorithm>
using namespace tavelo;
class tst_Measure : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void open()
    {
        QByteArray docs;
        const QString ordinary = QString("A keeper and his daughter wait for the lamp to be lit. ").repeated(12);
        const QList<std::pair<const char *, QString>> kinds{{"warm", ordinary}, {"ordinary", ordinary}, {"1 M letters", QString(1'000'000, 'x')}, {"20,000 in words", ordinary.repeated(40)},
            {"to and fro", QString(u"a\u05d0"_qs).repeated(500'000)}, {"accents", "a" + QString(1'000'000, QChar(0x301))}, {"lines", QString("a\n").repeated(500'000)}, {"arabic", QString(1'000'000, QChar(0x628))},{"a,cjk", QString(u"a\u65e5"_qs).repeated(500000)},{"devanagari", QString::fromUtf8("क्ष").repeated(300000)}};
        int n = 0;
        QList<MediaItem> items;
        for (const auto &[name, text] : kinds) {
            MediaItem item; item.id = "film0"; item.title = name; item.summary = text; items.append(item); ++n;
        }
        Program program;
        QVERIFY(program.show());
        QTRY_VERIFY_WITH_TIMEOUT(!program.state().popular().isEmpty(), 10000);
        QTest::qWait(2500);
        QList<QList<double>> times(items.size());
        for (int turn = 0; turn < 7; ++turn)
            for (int i = 0; i < items.size(); ++i) {
                if (i > 2 && turn > 2) continue;
                QElapsedTimer t;
                bool drawn = false; double ms = 0;
                t.start();
                auto c = connect(program.window(), &QQuickWindow::frameSwapped, this, [&] { if (!drawn && program.item("ItemDetailView")) { ms = double(t.nsecsElapsed()) / 1e6; drawn = true; } });
                program.state().selectItem(items[i]);
                while (!drawn) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
                times[i].append(ms);
                disconnect(c);
                QTest::qWait(300);
                program.state().clearSelectedItem();
                QTest::qWait(300);
            }
        for (int i = 0; i < items.size(); ++i) {
            std::ranges::sort(times[i]);
            qInfo("%-20s best %7.1f median %7.1f ms", kinds[i].first, times[i].first(), times[i][times[i].size() / 2]);
        }
    }
};
TAVELO_WINDOW_TEST(tst_Measure)
#include "tst_measure.moc"
