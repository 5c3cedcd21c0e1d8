// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "testlib/Table.h"
#include "ui/Format.h"
#include "ui/PosterImage.h"
#include "ui/PosterQueue.h"
#include "ui/UiModule.h"

#include <QBuffer>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QtEndian>

#include <algorithm>
#include <numeric>

using namespace tavelo;

namespace {

/// Red, green and blue stripes of equal width.
QByteArray picture(QSize size, const char *format)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::green);
    QPainter painter(&image);
    painter.fillRect(0, 0, size.width() / 3, size.height(), Qt::red);
    painter.fillRect(size.width() - size.width() / 3, 0, size.width(), size.height(), Qt::blue);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes;
}

/// A JPEG whose header says that it is that large.
QByteArray declaring(quint16 width, quint16 height)
{
    QByteArray bytes = picture({16, 16}, "JPEG");
    const qsizetype frame = bytes.indexOf(QByteArray::fromHex("ffc0"));
    qToBigEndian(height, bytes.data() + frame + 5);
    qToBigEndian(width, bytes.data() + frame + 7);
    return bytes;
}

const char *const posterSource = R"(
    import QtQuick
    import Tavelo
    Item {
        property alias url: poster.url
        property alias missing: poster.missing
        property alias radius: poster.radius
        property bool ready: poster.children[2].status === Image.Ready
        Poster { id: poster; width: 150; height: 210 }
    }
)";

constexpr int patience = 10'000; // milliseconds

class Posters
{
public:
    Posters()
    {
        UiModule::prepare(*engine);
        QQmlComponent component(engine.get());
        component.setData(posterSource, QUrl("qrc:/test.qml"));
        item.reset(component.create());
        if (!item)
            qFatal("%s", qPrintable(component.errorString()));
        window.resize(400, 400);
        qobject_cast<QQuickItem *>(item.get())->setParentItem(window.contentItem());
    }

    bool waitReady() const
    {
        return QTest::qWaitFor([&] { return item->property("ready").toBool(); }, patience);
    }
    bool isMissing() const { return item->property("missing").toBool(); }
    bool isThere() const { return item->property("ready").toBool() && !isMissing(); }

    QQuickWindow window; // not shown
    std::unique_ptr<QQmlEngine> engine = std::make_unique<QQmlEngine>();
    std::unique_ptr<QObject> item;
};

qsizetype timesAsked(const HttpService &server, const QByteArray &target)
{
    return std::ranges::count(server.requests(), target, &HttpService::Request::target);
}

} // namespace

class tst_Posters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decodes_data()
    {
        const auto row = columns<QByteArray, bool>("bytes", "good");
        row("PNG", picture({300, 200}, "PNG"), true);
        row("JPEG", picture({300, 200}, "JPEG"), true);
        row("tiny", picture({3, 3}, "PNG"), true);
        row("nothing", QByteArray(), false);
        row("a web page", "<html><body>Not found</body></html>", false);
        row("SVG",
            "<svg xmlns='http://www.w3.org/2000/svg' width='9' "
            "height='9'><image href='file:///etc/passwd'/></svg>",
            false);
        row("BMP", picture({300, 200}, "BMP"), false);
        row("declares many pixels", declaring(4'000, 4'000), true);
        row("declares too many pixels", declaring(4'001, 4'000), false);
        row("would be too large at this size", declaring(40'000, 1), false);
        row("ends in its header", picture({300, 200}, "PNG").left(30), false);
    }

    void decodes()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, good);
        const QImage image = PosterImage::decode(bytes, {150, 210}, 8);
        QCOMPARE(!image.isNull(), good);
        if (good)
            QCOMPARE(image.size(), QSize(150, 210));
    }

    void fillsAndCrops_data()
    {
        const auto row = columns<QSize, QColor>("size", "left");
        row("as it is", QSize(300, 200), QColor(Qt::red));
        row("smaller", QSize(30, 20), QColor(Qt::red));
        row("its middle third", QSize(90, 200), QColor(Qt::green));
        row("larger", QSize(600, 400), QColor(Qt::red));
    }

    void fillsAndCrops()
    {
        QFETCH(QSize, size);
        const QImage image = PosterImage::decode(picture({300, 200}, "PNG"), size, 0);
        QCOMPARE(image.size(), size);
        QTEST(image.pixelColor(2, size.height() / 2), "left");
        QCOMPARE(image.pixelColor(size.width() / 2, size.height() / 2), QColor(Qt::green));
    }

    void roundsItsCorners()
    {
        const QImage image = PosterImage::decode(picture({300, 200}, "JPEG"), {150, 210}, 8);
        for (const QPoint corner : {QPoint(0, 0), {149, 0}, {0, 209}, {149, 209}})
            QCOMPARE(image.pixelColor(corner).alpha(), 0);
        for (const QPoint inside : {QPoint(8, 0), {0, 8}, {3, 3}, {149, 201}})
            QCOMPARE(image.pixelColor(inside).alpha(), 255);
    }

    void asksForThatVeryAddress_data()
    {
        const auto row = columns<QByteArray>("target");
        row("plain", "/services/img/film");
        row("space", "/services/img/a%20film");
        row("number sign and percent", "/img/50%25%23one");
        row("escaped slash", "/img/a%2Fb%252Fc");
        row("accents", "/img/%C3%A9t%C3%A9");
        row("query", "/img?a=1%262&b=x+y");
        row("placeholders", "/img/%251%252");
    }

    void asksForThatVeryAddress()
    {
        QFETCH(QByteArray, target);
        HttpService server;
        server.serve(target.split('?').first(), {.body = picture({30, 42}, "PNG")});
        Posters posters;
        posters.item->setProperty("url", QUrl::fromEncoded(server.base().toUtf8() + target));
        QVERIFY(posters.waitReady());
        QVERIFY(posters.isThere());
        QCOMPARE(server.requests().size(), 1);
        QCOMPARE(server.requests().first().target, target);
    }

    void onesThatDoNotCome_data()
    {
        const auto row = columns<int, QByteArray>("status", "body");
        row("404", 404, picture({30, 42}, "PNG"));
        row("no picture", 200, "<html></html>");
        row("empty", 200, QByteArray());
        row("larger than a poster is", 200,
            picture({30, 42}, "PNG") + QByteArray(4 * 1024 * 1024, 'x'));
    }

    void onesThatDoNotCome()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        HttpService server;
        server.serve("/img", {.body = body, .status = status});
        Posters posters;
        posters.item->setProperty("url", server.url("/img"));
        QTRY_VERIFY_WITH_TIMEOUT(posters.isMissing(), patience);

        posters.item->setProperty("visible", false); // shown again, and elsewhere at another size
        posters.item->setProperty("visible", true);
        Posters others;
        others.item->setProperty("radius", 10);
        others.item->setProperty("url", server.url("/img"));
        Posters last; // by the time of whose picture theirs would have been asked for
        server.serve("/last", {.body = picture({30, 42}, "PNG")});
        last.item->setProperty("url", server.url("/last"));
        QVERIFY(last.waitReady());
        QCOMPARE(timesAsked(server, "/img"), 1);
    }

    void askedForAgain_data()
    {
        const auto row = columns<bool>("refused");
        row("the service is down", true);
        row("the service has too much to do", false);
    }

    void askedForAgain()
    {
        QFETCH(bool, refused);
        HttpService server;
        server.serve("/img", {.body = picture({30, 42}, "PNG"), .status = refused ? 200 : 503});
        server.setListening(!refused);
        Posters posters;
        posters.item->setProperty("url", server.url("/img"));
        QTRY_VERIFY_WITH_TIMEOUT(posters.isMissing(), patience);
        server.setListening(true);
        server.at("/img").status = 200;
        QTRY_VERIFY_WITH_TIMEOUT(posters.isThere(), patience);
        QCOMPARE(timesAsked(server, "/img"), refused ? 1 : 2);
    }

    void notAskedForAgainUnseen_data()
    {
        const auto row = columns<QByteArray, QVariant, QVariant>("property", "unseen", "seen");
        row("hidden", "visible", false, true);
        row("elsewhere in the list", "y", 5000, 0);
    }

    void notAskedForAgainUnseen()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, unseen);
        QFETCH(QVariant, seen);
        HttpService server;
        server.serve("/unseen", {.status = 503});
        server.serve("/seen", {.status = 503});
        Posters away;
        away.item->setProperty("url", server.url("/unseen"));
        QTRY_VERIFY_WITH_TIMEOUT(away.isMissing(), patience);
        away.item->setProperty(property.constData(), unseen);
        Posters here;
        here.item->setProperty("url", server.url("/seen"));
        QTRY_COMPARE_WITH_TIMEOUT(timesAsked(server, "/seen"), 2, patience);
        QCOMPARE(timesAsked(server, "/unseen"), 1);

        server.serve("/unseen", {.body = picture({30, 42}, "PNG")});
        away.item->setProperty(property.constData(), seen);
        QTRY_VERIFY_WITH_TIMEOUT(away.isThere(), patience);
    }

    void cancelledWithItsCard()
    {
        HttpService server;
        server.serve("/img", {.silent = true});
        Posters posters;
        posters.item->setProperty("url", server.url("/img"));
        QTRY_COMPARE(server.openRequests(), 1);
        posters.item.reset();
        QTRY_COMPARE(server.openRequests(), 0);
    }

    void fewAreOnTheirWayAtOnce()
    {
        HttpService services[4]; // more than one has connections for
        QStringList urls;
        for (int i = 0; i < 20; ++i) {
            services[i % 4].serve("/img" + QByteArray::number(i), {.silent = true});
            urls.append(services[i % 4].url("/img" + QByteArray::number(i)).toString());
        }
        const auto open = [&] {
            return std::accumulate(std::begin(services), std::end(services), 0,
                                   [](int sum, auto &one) { return sum + one.openRequests(); });
        };
        Posters posters;
        QQmlComponent component(posters.engine.get());
        component.setData(
            "import QtQuick\nimport Tavelo\nItem { id: page; required property var urls\n"
            "Repeater { model: page.urls; Poster { required property url modelData\n"
            "url: modelData; width: 150; height: 210 } } }",
            QUrl("qrc:/test.qml"));
        std::unique_ptr<QObject> page(component.createWithInitialProperties({{"urls", urls}}));
        QVERIFY(page);
        QTRY_COMPARE(open(), PosterQueue::atOnce);

        // Those that wait are not asked for when nobody wants them any more; the toolkit may tell
        // so of the first ones before it does of the others.
        page.reset();
        QTRY_COMPARE(open(), 0);
        services[0].serve("/last", {.body = picture({30, 42}, "PNG")});
        posters.item->setProperty("url", services[0].url("/last"));
        QVERIFY(posters.waitReady());
        qsizetype asked = 0;
        for (const HttpService &service : services)
            asked += service.requests().size();
        QVERIFY(asked <= 2 * PosterQueue::atOnce + 1);
    }

    void engineEndsWhileTheyAreOnTheirWay_data()
    {
        const auto row = columns<bool>("asked");
        row("at once", false);
        row("once asked for", true);
    }

    void engineEndsWhileTheyAreOnTheirWay()
    {
        QFETCH(bool, asked);
        HttpService server;
        server.serve("/img", {.silent = true});
        {
            Posters posters;
            posters.item->setProperty("url", server.url("/img"));
            if (asked)
                QTRY_COMPARE(server.openRequests(), 1);
        }
        QTRY_COMPARE(server.openRequests(), 0);
    }
};

QTEST_MAIN(tst_Posters)
#include "tst_posters.moc"
