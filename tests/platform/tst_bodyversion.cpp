// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/BodyVersion.h"
#include "platform/http/Fetch.h"
#include "testlib/Table.h"

#include <QTest>

using namespace tavelo;

namespace {

constexpr const char *noon = "Sat, 01 Mar 2025 12:00:00 GMT";
constexpr const char *nextSecond = "Sat, 01 Mar 2025 12:00:01 GMT";
constexpr const char *later = "Sun, 02 Mar 2025 12:00:00 GMT";

const QUrl node("https://node1.example/7/items/film/film.mp4");
const QUrl otherPath("https://node1.example/9/items/film/film.mp4");
const QUrl otherNode("https://node2.example/7/items/film/film.mp4");

FetchHead tagged(const QByteArray &tag, const QUrl &url = node)
{
    return {.status = 200, .url = url, .length = 1000, .entityTag = tag};
}

FetchHead dated(const QByteArray &modified, const QByteArray &date = later, const QUrl &url = node)
{
    return {.status = 200, .url = url, .length = 1000, .lastModified = modified, .date = date};
}

/// The same in parts.
FetchHead part(FetchHead head, const QByteArray &contentRange = "bytes 500-599/1000")
{
    head.status = 206;
    head.length = 100;
    head.contentRange = contentRange;
    return head;
}

} // namespace

class tst_BodyVersion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void compare_data()
    {
        const auto row = columns<FetchHead, FetchHead, SameFile>("one", "other", "same");
        row("tag and size", tagged("\"a\""), part(tagged("\"a\"")), SameFile::Yes);
        row("tag at another place of the host", tagged("\"a\""), tagged("\"a\"", otherPath),
            SameFile::Yes);
        row("another tag", tagged("\"a\""), part(tagged("\"b\"")), SameFile::No);
        row("another size", tagged("\"a\""), part(tagged("\"a\""), "bytes 0-99/1001"),
            SameFile::No);
        row("size not told", tagged("\"a\""), part(tagged("\"a\""), "bytes 0-99/*"), SameFile::Yes);
        row("another node's tag", tagged("\"a\""), tagged("\"b\"", otherNode), SameFile::Perhaps);
        row("one tag of two nodes", tagged("\"a\""), tagged("\"a\"", otherNode), SameFile::Perhaps);
        row("another node's size", tagged("\"a\""),
            part(tagged("\"a\"", otherNode), "bytes 0-99/1001"), SameFile::No);
        row("weak tags", tagged("W/\"a\""), tagged("W/\"b\""), SameFile::Perhaps);
        row("no validators", tagged({}), part(tagged({})), SameFile::Perhaps);
        row("tag against date", tagged("\"a\""), dated(noon), SameFile::Perhaps);
        row("date", dated(noon), part(dated(noon)), SameFile::Yes);
        row("another date", dated(noon), dated(nextSecond), SameFile::No);
        row("date of another address", dated(noon), dated(noon, later, otherPath),
            SameFile::Perhaps);
        row("answered within the second of the change", dated(noon, noon), dated(noon),
            SameFile::Perhaps);
        row("a second later", dated(noon, nextSecond), dated(noon), SameFile::Yes);
        row("no date", dated("yesterday"), dated("today"), SameFile::Perhaps);
    }

    void compare()
    {
        QFETCH(FetchHead, one);
        QFETCH(FetchHead, other);
        QTEST(BodyVersion::of(one).compare(BodyVersion::of(other)), "same");
        QTEST(BodyVersion::of(other).compare(BodyVersion::of(one)), "same");
    }

    /// A host is not given another's validator, nor one that could be a lie.
    void ifRange()
    {
        QCOMPARE(BodyVersion::of(tagged("\"a\"")).ifRangeFor(node), "\"a\"");
        QCOMPARE(BodyVersion::of(tagged("\"a\"")).ifRangeFor(otherNode), "");
        QCOMPARE(BodyVersion::of(dated(noon)).ifRangeFor(node), noon);
        QCOMPARE(BodyVersion::of(dated(noon, noon)).ifRangeFor(node), "");
        QCOMPARE(BodyVersion::of(tagged("W/\"a\"")).ifRangeFor(node), "");
    }
};

QTEST_GUILESS_MAIN(tst_BodyVersion)
#include "tst_bodyversion.moc"
