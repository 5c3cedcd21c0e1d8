// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"
#include "WindowTest.h"

#include "platform/DisplayText.h"
#include "storage/SettingsStore.h"
#include "testlib/Table.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace tavelo;

class tst_Catalog : public QObject
{
    Q_OBJECT

private:
    static constexpr int patience = 10'000; // milliseconds

    static HttpService::Answer &searchAnswer()
    {
        return Program::server().at("/advancedsearch.php");
    }

    /// The queries that were asked, decoded, since they were last forgotten.
    static QStringList queries()
    {
        QStringList asked;
        for (const HttpService::Request &request : Program::server().requests()) {
            const QByteArray query = request.target.split('?').value(1).split('&').value(0);
            if (request.target.startsWith("/advancedsearch.php"))
                asked.append(QUrl::fromPercentEncoding(query));
        }
        return asked;
    }

    static QQuickItem *view(const Program &program)
    {
        const QQuickItem *grid = program.item("MediaGrid");
        return grid ? grid->property("view").value<QQuickItem *>() : nullptr;
    }

    static bool currentIsInView(const Program &program)
    {
        const auto *current = view(program)->property("currentItem").value<QQuickItem *>();
        const QRectF place = current->mapRectToItem(view(program), current->boundingRect());
        return place.top() >= 0 && place.bottom() <= view(program)->height();
    }

    static bool isTinted(const Program &program, const QString &collection)
    {
        return program.control(collection)->property("prominent").toBool();
    }

    static bool discover(Program &program)
    {
        return program.click("Discover") &&
               QTest::qWaitFor([&] { return program.control("Film 0") != nullptr; }, patience);
    }

private Q_SLOTS:
    void discoverLoads_data()
    {
        const auto row = columns<int>("status");
        row("well", 200);
        row("badly", 503);
    }

    void discoverLoads()
    {
        QFETCH(int, status);
        const QString nothing = "Pick a collection to browse real Orvella catalog entries.";
        Program program;
        QVERIFY(program.show());
        QTRY_VERIFY_WITH_TIMEOUT(!program.state().popular().isEmpty(), patience);
        Program::server().forgetRequests();
        searchAnswer().status = status;

        for (const auto &[title, query] : {std::pair{"Feature Films", "collection:(feature_films)"},
                                           std::pair{"Film Noir", "collection:(film_noir)"}}) {
            QVERIFY(program.click(queries().isEmpty() ? "Discover" : title));
            QTRY_VERIFY(!program.state().discoverLoading());
            QVERIFY2(queries().last().contains(query), qPrintable(queries().last()));
            QTRY_COMPARE(!!program.control("Film 0"), status == 200);
            QCOMPARE(!!program.text(nothing), status != 200);
            for (const Collection &one : Collection::all())
                QCOMPARE(isTinted(program, one.title), one.title == title);
        }
        QVERIFY(program.click("Home"));
        QVERIFY(program.click("Discover"));
        QCOMPARE(queries().size(), 2);
        QVERIFY(isTinted(program, "Film Noir"));
    }

    void searches_data()
    {
        const auto row = columns<QString, QString, int>("text", "how", "count");
        row("Return", "moon", "Return", 1);
        row("the button", "moon", "click", 1);
        row("Ctrl+Return", "moon", "Ctrl", 1);
        row("typing alone", "moon", "", 0);
        row("nothing", "", "Return", 0);
        row("blanks", "  ", "click", 0);
    }

    void searches()
    {
        QFETCH(QString, text);
        QFETCH(QString, how);
        QFETCH(int, count);
        const QString hint = "Search the Internet Archive's public video catalog. For torrent "
                             "sources, use Torrent Search.";
        Program program;
        QVERIFY(program.show());
        QTRY_VERIFY_WITH_TIMEOUT(!program.state().popular().isEmpty(), patience);
        QVERIFY(program.click("Search"));
        QTRY_VERIFY(program.text(hint));
        Program::server().forgetRequests();

        program.clickAt(Program::middleOf(program.item("TextEntry")));
        program.type(text);
        QCOMPARE(program.state().searchQuery(), text);
        if (how == "click")
            program.clickAt(Program::middleOf(program.item("PushButton")));
        else if (!how.isEmpty())
            program.key(Qt::Key_Return, how == "Ctrl" ? Qt::ControlModifier : Qt::NoModifier);
        QCOMPARE(program.state().searching(), count > 0);
        QTRY_VERIFY_WITH_TIMEOUT(!program.state().searching(), patience);
        QCOMPARE(queries().filter("moon").size(), count);
        QTRY_COMPARE(!!program.control("Film 0"), count > 0);
        QCOMPARE(!!program.text(hint), count == 0);
    }

    void searchFailsAfterAnother()
    {
        Program program;
        QVERIFY(program.show());
        QVERIFY(program.click("noir"));
        QCOMPARE(program.state().sectionName(), "Search");
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Film 0"), patience);
        QCOMPARE(program.item("TextEntry")->property("text"), "noir");

        searchAnswer().status = 503;
        program.key(Qt::Key_Return, Qt::ControlModifier);
        QTRY_VERIFY_WITH_TIMEOUT(program.text("Search failed: HTTP 503"), patience);
        QVERIFY(!program.control("Film 0"));
    }

    void formIsOneForAllScreens()
    {
        Program program;
        QVERIFY(program.show());
        QVERIFY(discover(program));
        QVERIFY(program.item("PosterCard"));
        QVERIFY(program.click("List"));
        QTRY_VERIFY(program.item("MediaRow"));
        QVERIFY(!program.item("PosterCard"));
        QVERIFY(program.text("Orvella"));
        QTRY_VERIFY(!SettingsStore().gridView());

        program.state().searchFor("moon");
        QTRY_VERIFY_WITH_TIMEOUT(program.item("MediaRow"), patience);
        QVERIFY(program.click("Grid"));
        QVERIFY(program.click("Discover"));
        QTRY_VERIFY(program.item("PosterCard"));
        QTRY_VERIFY(SettingsStore().gridView());
    }

    // What is not cut before it is laid out stops the window for seconds.
    void hostileTextsAreShownCut()
    {
        const QString letters(1'000'000, 'x');
        const QString name = letters.left(60'000);
        QJsonObject film{{"identifier", "film0"}, {"title", name}, {"description", letters}};
        for (const char *key : {"year", "creator", "licenseurl", "subject"})
            film[key] = name;
        Program program;
        searchAnswer().body = R"({"response":{"docs":[)" + QJsonDocument(film).toJson() + "]}}";
        Program::serveFiles("film0", {name + ".mp4"});
        QVERIFY(program.show());
        HistoryEntry watched = Program::watched(1, 60, 600);
        watched.title = name;
        program.state().library()->record(watched);
        program.state().settings()->setGridView(false);
        const auto longest = [&] {
            qsizetype length = 0;
            for (const QQuickItem *item : program.visibleItems())
                length = qMax(length, item->property("text").toString().size());
            return length;
        };
        const QString cut = letters.left(499) + u'…';
        for (const char *section : {"Home", "Library", "Discover"}) {
            QVERIFY(program.click(section));
            QTRY_VERIFY_WITH_TIMEOUT(program.text(cut), patience);
            QVERIFY2(longest() <= 1'100, qPrintable(QString::number(longest())));
        }
        program.state().selectItem(program.state().discoverResults().first());
        QTRY_VERIFY_WITH_TIMEOUT(program.text("Play"), patience); // the files' heading
        QVERIFY2(longest() <= 21'000, qPrintable(QString::number(longest())));
        QVERIFY(program.text(DisplayText::body(letters)));
        QCOMPARE(program.state().selectedItem()->title, name);
    }

    void gridIsWalkedByKeys_data()
    {
        const auto row = columns<bool, QList<Qt::Key>, int>("asGrid", "keys", "film");
        using Keys = QList<Qt::Key>;
        // Six columns and two whole rows, or nine whole rows of the list.
        row("along a row", true, Keys{Qt::Key_Right, Qt::Key_Right, Qt::Key_Left}, 1);
        row("into the next row", true, Keys(6, Qt::Key_Right), 6);
        row("down", true, Keys{Qt::Key_Right, Qt::Key_Down, Qt::Key_Down}, 13);
        row("up", true, Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up}, 6);
        row("not past the end", true, Keys{Qt::Key_End, Qt::Key_Down, Qt::Key_Right}, 23);
        row("home", true, Keys{Qt::Key_End, Qt::Key_Home}, 0);
        row("a page", true, Keys{Qt::Key_PageDown, Qt::Key_Right}, 13);
        row("a page back", true, Keys{Qt::Key_End, Qt::Key_PageUp}, 11);
        row("list, down", false, Keys{Qt::Key_Down, Qt::Key_Right, Qt::Key_Down}, 2);
        row("list, a page", false, Keys{Qt::Key_PageDown}, 9);
        row("list, end", false, Keys{Qt::Key_End, Qt::Key_Up}, 22);
    }

    void gridIsWalkedByKeys()
    {
        QFETCH(bool, asGrid);
        QFETCH(QList<Qt::Key>, keys);
        QFETCH(int, film);
        Program program;
        QVERIFY(program.show());
        program.state().settings()->setGridView(asGrid);
        QVERIFY(program.click("Discover"));
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Film 0"), patience);
        program.control("Feature Films")->parentItem()->parentItem()->forceActiveFocus();
        program.key(Qt::Key_Down);
        for (const Qt::Key key : keys)
            program.key(key);
        QTRY_VERIFY(currentIsInView(program));
        program.key(Qt::Key_Return);
        QVERIFY(program.state().selectedItem());
        QCOMPARE(program.state().selectedItem()->id, QStringLiteral("film%1").arg(film));

        const QVariant place = view(program)->property("contentY");
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.item("ItemDetailView"));
        program.key(Qt::Key_Return);
        QCOMPARE(program.state().selectedItem()->id, QStringLiteral("film%1").arg(film));
        program.key(Qt::Key_Escape);
        QVERIFY(program.click("Home"));
        QVERIFY(program.click("Discover"));
        QCOMPARE(view(program)->property("contentY"), place);
        QCOMPARE(view(program)->property("currentIndex"), film);
    }

    void headScrollsAwayAndComesBack()
    {
        Program program;
        QVERIFY(program.show());
        QVERIFY(discover(program));
        const auto *heading = program.control("Grid");
        const qreal top = heading->mapToScene({}).y();
        const auto scrollsToItsEnd = [&] {
            program.wheel({600, 500}, Qt::NoModifier);
            return view(program)->property("atYEnd").toBool();
        };
        QTRY_VERIFY(scrollsToItsEnd());
        QTRY_VERIFY(heading->mapToScene({}).y() < top - 100);
        QTRY_VERIFY(!view(program)->property("moving").toBool());

        // The other form begins with the same films: the second row of six is nearest.
        QCOMPARE(view(program)->property("contentY"), 4 * 296 - view(program)->height());
        program.state().settings()->setGridView(false);
        program.window()->grabWindow();
        QCOMPARE(view(program)->property("contentY"), 6 * 89);

        program.key(Qt::Key_Home);
        QTRY_COMPARE(heading->mapToScene({}).y(), top);
        program.key(Qt::Key_Up);
        program.key(Qt::Key_Right);
        program.key(Qt::Key_Return);
        QTRY_COMPARE(program.state().collection()->title, "Silent Films");
    }

    void columnsFitTheWidth_data()
    {
        columns<int>("width");
        for (const int width : {980, 1057, 1058, 1240, 1440, 1600})
            QTest::addRow("%d", width) << width;
    }

    void columnsFitTheWidth()
    {
        QFETCH(int, width);
        Program program;
        QVERIFY(program.show());
        program.window()->resize(width, 820);
        QVERIFY(discover(program));
        QTRY_COMPARE(view(program)->width(), width - 190);
        const auto place = [&](int film) {
            return program.control(QStringLiteral("Film %1").arg(film))->mapToScene({});
        };
        QTRY_VERIFY(place(1).x() > place(0).x());
        int columns = 1;
        while (place(columns).y() == place(0).y())
            ++columns;
        const int room = width - 190 - 48;
        QCOMPARE(columns, (room + 18) / 168);
        QCOMPARE(place(columns), place(0) + QPointF(0, 274 + 22));
        const qreal column = place(1).x() - place(0).x() - 18;
        QVERIFY2(column >= 150 && column <= 170, qPrintable(QString::number(column)));
    }
};

TAVELO_WINDOW_TEST(tst_Catalog)
#include "tst_catalog.moc"
