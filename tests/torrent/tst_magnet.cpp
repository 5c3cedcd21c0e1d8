// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/ServiceHosts.h"
#include "testlib/Table.h"
#include "torrent/Magnet.h"
#include "torrent/TorrentMetadata.h"

#include <QTest>

using namespace tavelo;

namespace {

const QString hex = "0123456789abcdef0123456789abcdef01234567";
const QString plain = "magnet:?xt=urn:btih:" + hex;

} // namespace

class TestMagnet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makes()
    {
        const QString made = makeMagnet(hex, "My Film (1999)");
        QVERIFY(made.startsWith("magnet:?xt=urn%3Abtih%3A" + hex +
                                "&dn=My%20Film%20%281999%29&tr=udp%3A%2F%2F"));
        QVERIFY(made.endsWith("%3A451%2Fannounce"));
        QCOMPARE(made.count("&tr="), 3);
        QVERIFY(made.indexOf("%3A1337%2F") < made.indexOf("%3A80%2F"));
        QVERIFY(made.indexOf("%3A80%2F") < made.indexOf("%3A451%2F"));
        QVERIFY(makeMagnet("AbC", "a-._~!*'&=+%é\n")
                    .contains("AbC&dn=a%2D%2E%5F%7E%21%2A%27%26%3D%2B%25%C3%A9%0A&"));
        QVERIFY(makeMagnet(hex, QString(QChar(0xD800))).contains("&dn=&tr="));
    }

    void readsWhatItMakes()
    {
        const QString name = "Ünder_scored - Film+More & 100% (1999) #1? مرحبا";
        const auto read = TorrentMetadata::parseMagnet(makeMagnet(hex, name));
        QVERIFY(read);
        QCOMPARE(read->name, name);
        QCOMPARE(read->infoHash, hex);
        QCOMPARE(read->trackers, ServiceHosts::current().trackers);
        QCOMPARE(read->magnet, makeMagnet(hex, name));
        QVERIFY(read->files.isEmpty());
    }

    void reads_data()
    {
        const auto row =
            columns<QString, QString, QString, QStringList>("text", "hash", "name", "trackers");
        const auto reads = [&](const char *title, const QString &text, const QString &hash,
                               const QString &name, const QStringList &trackers = {}) {
            row(title, text, hash, name, trackers);
        };
        const QString upper = hex.toUpper();
        const QString zeros(40, '0');
        reads("no name", plain, hex, hex);
        reads("capitals", "magnet:?xt=URN:BTIH:" + upper, hex, upper);
        reads("encoded topic", "magnet:?xt=urn%3abtih%3A" + hex + "&dn=x", hex, "x");
        reads("encoded parameter name", "magnet:?%78t=urn:btih:" + hex, hex, hex);
        reads("base32", "magnet:?xt=urn:btih:" + QString(32, 'A'), zeros, zeros);
        reads("base32 in small letters", "magnet:?xt=urn:btih:aerukz4jvpg66ajdivtytk6n54asgrlh",
              hex, hex);
        reads("blanks around", " \t\n" + plain + "\r\n ", hex, hex);
        reads("empty name", plain + "&dn=", hex, "");
        reads("name without a value", plain + "&dn&dn=second", hex, hex);
        reads("a plus stays", plain + "&dn=a+b%20c", hex, "a+b c");
        reads("spaces inside", plain + "&dn=a b", hex, "a b");
        reads("a lone sign beside escapes", plain + "&dn=100% of%20it&tr=udp%3A%2F%2Fh", hex,
              "100% of it", {"udp://h"});
        reads("beyond ASCII", plain + u"&dn=\u00E9|x"_qs, hex, u"\u00E9|x"_qs);
        reads("not UTF-8", plain + "&dn=%FF", hex, u"\uFFFD"_qs);
        reads("a fragment", plain + "#&dn=no", hex, hex);
        reads("topic last", "magnet:?dn=x&xt=urn:btih:" + hex, hex, "x");
        reads("the first topic counts", plain + "&xt=urn:btih:bad", hex, hex);
        reads("names in capitals are others", plain + "&DN=x&TR=y", hex, hex);
        reads("trackers in order, twice, without a value",
              plain + "&tr=udp%3A%2F%2Fb%3A1&tr&tr=a&tr=&tr=a", hex, hex,
              {"udp://b:1", "a", "", "a"});
    }
    void reads()
    {
        QFETCH(QString, text);
        const auto read = TorrentMetadata::parseMagnet(text);
        QVERIFY(read);
        QTEST(read->infoHash, "hash");
        QTEST(read->name, "name");
        QTEST(read->trackers, "trackers");
        QVERIFY(read->magnet.startsWith("magnet:?"));
        QVERIFY(!read->magnet.contains(' '));
    }

    void refuses_data()
    {
        columns<QString>("text");
        const QStringList texts{"",
                                "magnet:",
                                "magnet:?",
                                "magnet:" + hex,
                                "magnet:?xt",
                                "magnet:?xt=",
                                "magnet:?xt&xt=urn:btih:" + hex,
                                "magnet:?xt=urn:btih:bad&xt=urn:btih:" + hex,
                                "magnet:?XT=urn:btih:" + hex,
                                "magnet:?xt=urn:btmh:" + hex,
                                "magnet:?xt=urn:btih:" + hex.chopped(1),
                                "magnet:?xt=urn:btih:" + hex + "8",
                                "magnet:?xt=urn:btih:g" + hex.sliced(1),
                                "magnet:?xt=urn:btih:" + QString(31, 'A') + "1",
                                "magnet:?xt=urn:btih:" + QString(40, QChar(0xFF11)),
                                "magnet:#?xt=urn:btih:" + hex,
                                "Magnet:?xt=urn:btih:" + hex,
                                "https://example.org/?xt=urn:btih:" + hex,
                                hex,
                                plain + "&dn=" + QString(70'000, 'x')};
        for (qsizetype i = 0; i < texts.size(); ++i)
            QTest::addRow("%lld %s", i, qPrintable(texts.at(i).left(28))) << texts.at(i);
    }
    void refuses()
    {
        QFETCH(QString, text);
        QVERIFY(!TorrentMetadata::parseMagnet(text));
    }

    void decodesBase32()
    {
        QCOMPARE(TorrentMetadata::base32ToHex("MZXW6YTBOI"), "666f6f626172"); // RFC 4648, 10
        QCOMPARE(TorrentMetadata::base32ToHex("MZX"), "66");
        QCOMPARE(TorrentMetadata::base32ToHex(""), "");
        for (const QString outside : {"MZXW6===", "0", "1", "8", "9", "Ä", " "})
            QVERIFY2(!TorrentMetadata::base32ToHex(outside), qPrintable(outside));
    }
};

QTEST_GUILESS_MAIN(TestMagnet)
#include "tst_magnet.moc"
