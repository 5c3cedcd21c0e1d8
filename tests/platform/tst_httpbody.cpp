// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/HttpBody.h"
#include "testlib/Table.h"

#include <QTest>

using namespace tavelo;

namespace {

HttpHead headOf(const QByteArray &fields)
{
    return HttpHead::parse("HTTP/1.1 200 OK\r\n" + fields + "\r\n").value_or(HttpHead());
}

struct Decoded
{
    QByteArray body = {};
    bool complete = false;
    bool malformed = false;
};

/// The body in `bytes`, which come `step` at a time.
Decoded decoded(const QByteArray &fields, const QByteArray &bytes, qsizetype step)
{
    auto body = HttpBody::of(headOf(fields)).value();
    Decoded result;
    for (qsizetype at = 0; at < bytes.size(); at += step) {
        QByteArray piece = bytes.mid(at, step);
        const qint64 count = body.decode(piece.data(), piece.size());
        if (count < 0) {
            result.malformed = true;
            break;
        }
        result.body += piece.first(count);
    }
    result.complete = body.isComplete();
    return result;
}

const QByteArray chunked = "Transfer-Encoding: Chunked\r\n";

} // namespace

class tst_HttpBody : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bodies_data()
    {
        const auto row = columns<QByteArray, QByteArray, QByteArray>("fields", "bytes", "body");
        row("length", "Content-Length: 5\r\n", "hello", "hello");
        row("length twice", "Content-Length: 5\r\ncontent-length: 5\r\n", "hello", "hello");
        row("one chunk", chunked, "5\r\nhello\r\n0\r\n\r\n", "hello");
        row("chunks", chunked, "5\r\nhello\r\n00c;x=\"y\"\r\n, \r\n0\r\n\r\n\r\n!\r\n0 \r\n\r\n",
            "hello, \r\n0\r\n\r\n\r\n!");
        row("trailer", chunked, "2\r\nhi\r\n0\r\nChecksum: 1\r\nDate: now\r\n\r\n", "hi");
        row("capitals", chunked, "A\r\n0123456789\r\n0\r\n\r\n", "0123456789");
    }

    /// The same whatever pieces it comes in; and nothing short of all of it is complete.
    void bodies()
    {
        QFETCH(QByteArray, fields);
        QFETCH(QByteArray, bytes);
        for (qsizetype step = 1; step <= bytes.size(); ++step) {
            const auto whole = decoded(fields, bytes + "rest", step);
            QVERIFY(whole.complete);
            QTEST(whole.body, "body");
        }
        for (qsizetype cut = 0; cut < bytes.size(); ++cut) {
            const auto part = decoded(fields, bytes.first(cut), 3);
            QVERIFY(!part.complete);
            QVERIFY(!part.malformed);
        }
    }

    void malformedChunks_data()
    {
        const auto row = columns<QByteArray>("bytes");
        for (const char *bytes :
             {"zz\r\n", "\r\n", "-1\r\n", "0x5\r\n", "5\nhello", "5\r\nhello!\r\n", "5\r\nhello\n",
              "1000000000000000\r\n", "5\r\nhello\r\n\r\n"})
            QTest::addRow("%s", QByteArray(bytes).toPercentEncoding().constData())
                << QByteArray(bytes);
        row("endless line", QByteArray(10'000, '0'));
    }

    void malformedChunks()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(decoded(chunked, bytes, bytes.size()).malformed);
        QVERIFY(!decoded(chunked, bytes, 1).complete);
    }

    void refusedHeads_data()
    {
        columns<QByteArray>("fields");
        for (const char *fields :
             {"Content-Length: 5\r\nTransfer-Encoding: chunked\r\n", "Transfer-Encoding: gzip\r\n",
              "Content-Length: 5, 6\r\n", "Content-Length: -5\r\n", "Content-Length: 5 bytes\r\n",
              "Content-Length: 99999999999999999999\r\n"})
            QTest::addRow("%s", QByteArray(fields).simplified().constData()) << QByteArray(fields);
    }

    void refusedHeads()
    {
        QFETCH(QByteArray, fields);
        const HttpHead head = headOf(fields);
        QCOMPARE(head.status, 200);
        QVERIFY(!HttpBody::of(head));
    }

    void heads_data()
    {
        // status: 0: refused
        const auto row = columns<QByteArray, int>("text", "status");
        row("no reason", "HTTP/1.0 206\r\n\r\n", 206);
        row("reason", "HTTP/1.1 404 Not \xfc here\r\n\r\n", 404);
        row("another protocol", "ICY 200 OK\r\n\r\n", 0);
        row("no status", "HTTP/1.1 OK yes\r\n\r\n", 0);
        row("long status", "HTTP/1.1 2000 OK\r\n\r\n", 0);
        row("no colon", "HTTP/1.1 200 OK\r\nETag\r\n\r\n", 0);
        row("control", "HTTP/1.1 200 OK\r\nETag: \"a\rb\"\r\n\r\n", 0);
        row("space in a name", "HTTP/1.1 200 OK\r\nETag : 1\r\n\r\n", 0);
    }

    void heads()
    {
        QFETCH(QByteArray, text);
        QTEST(HttpHead::parse(text).value_or(HttpHead()).status, "status");
    }
};

QTEST_GUILESS_MAIN(tst_HttpBody)
#include "tst_httpbody.moc"
