// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "torrent/BencodeParser.h"
#include "torrent/TorrentParseError.h"

#include <QTest>

using namespace tavelo;

namespace {

// The value written out, so that a table can say what is expected: dictionaries by key.
QString written(const Bencode &value)
{
    if (const auto number = value.integer())
        return QString::number(*number);
    if (const auto text = value.string())
        return "'" + *text + "'";
    QStringList parts;
    if (const auto dict = value.dict()) {
        for (auto it = dict->begin(); it != dict->end(); ++it)
            parts.append(it.key() + ":" + written(it.value()));
        parts.sort();
        return "{" + parts.join(",") + "}";
    }
    for (const Bencode &element : value.elements())
        parts.append(written(element));
    return "[" + parts.join(",") + "]";
}

QByteArray nested(int lists, const QByteArray &innermost = {})
{
    return QByteArray(lists, 'l') + innermost + QByteArray(lists, 'e');
}

} // namespace

class TestBencode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const QByteArray &input, const QString &expected) {
            QTest::newRow(name) << input << expected;
        };
        row("minus zero", "i-0e", "0");
        row("plus", "i+5e", "5");
        row("leading zeros", "i007e", "7");
        row("largest", "i9223372036854775807e", "9223372036854775807");
        row("smallest", "i-9223372036854775808e", "-9223372036854775808");
        row("no bytes", "0:", "''");
        row("zeros before a length", "03:abc", "'abc'");
        row("a colon inside", "3:a:b", "'a:b'");
        row("all kinds", "d4:listli1e1:xe4:dictd1:ki2eee", "{dict:{k:2},list:[1,'x']}");
        row("empty ones inside", "llede0:e", "[[],{},'']");
        row("unsorted keys", "d1:bi1e1:ai2ee", "{a:2,b:1}");
        row("a key twice", "d1:ai1e1:ali2eee", "{a:[2]}");
        row("keys with one text", "d1:\xFFi1e1:\xFEi2ee", u"{\uFFFD:2}"_qs);
        row("trailing bytes", "de and more", "{}");
        row("40 levels", nested(40), QString(40, '[') + QString(40, ']'));
    }
    void reads()
    {
        QFETCH(QByteArray, input);
        BencodeParser parser(input);
        const auto value = parser.parse();
        QVERIFY(value);
        QTEST(written(*value), "expected");
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("input");
        const QByteArrayList inputs{"",
                                    "e",
                                    "x",
                                    "-1:",
                                    ":",
                                    "i",
                                    "ie",
                                    "i-e",
                                    "i+e",
                                    "i+-5e",
                                    "i 1e",
                                    "i1 e",
                                    "i1",
                                    "i1.5e",
                                    "i9223372036854775808e",
                                    "i-9223372036854775809e",
                                    "i0x1e",
                                    "3:ab",
                                    "3abc",
                                    "1a:x",
                                    "200000000:only a little",
                                    "9223372036854775807:x",
                                    "9223372036854775808:x",
                                    "l",
                                    "li1e",
                                    "d",
                                    "d1:a",
                                    "d1:ae",
                                    "d1:ai1e",
                                    "di1ei2ee",
                                    "dli1eei2ee",
                                    "lxe",
                                    nested(41),
                                    nested(40, "i1e"),
                                    QByteArray(38, 'l') + "d1:ali1eee" + QByteArray(38, 'e'),
                                    QByteArray(1'000'000, 'l'),
                                    QByteArray(1'000'000, '1')};
        for (qsizetype i = 0; i < inputs.size(); ++i)
            QTest::addRow("%lld %s", i, inputs.at(i).left(24).constData()) << inputs.at(i);
    }
    void refuses()
    {
        QFETCH(QByteArray, input);
        BencodeParser parser(input);
        const auto value = parser.parse();
        QVERIFY(!value);
        QCOMPARE(value.error(), TorrentParseError());
    }

    void decodesText_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        const QString bad = u"\uFFFD"_qs;
        QTest::newRow("well-formed")
            << QByteArray("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xAC") << u"a\u00E9\u20AC\U0001F3AC"_qs;
        QTest::newRow("byte order mark stays") << QByteArray("\xEF\xBB\xBFx") << u"\uFEFFx"_qs;
        QTest::newRow("cut sequence is one") << QByteArray("\xE2\x82z") << bad + "z";
        QTest::newRow("cut at the end") << QByteArray("z\xF0\x9F\x8E") << "z" + bad;
        QTest::newRow("stray trailing bytes") << QByteArray("\x80\xBF") << bad + bad;
        QTest::newRow("overlong") << QByteArray("\xC0\xAF") << bad + bad;
        QTest::newRow("overlong of three") << QByteArray("\xE0\x80\x80") << bad + bad + bad;
        QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80") << bad + bad + bad;
        QTest::newRow("past U+10FFFF") << QByteArray("\xF4\x90\x80\x80") << bad.repeated(4);
        QTest::newRow("a lead in a sequence")
            << QByteArray("\xF1\x80\xC3\xA9") << bad + u"\u00E9"_qs;
        QTest::newRow("zero byte") << QByteArray("a\0b", 3) << QString::fromLatin1("a\0b", 3);
    }
    void decodesText()
    {
        QFETCH(QByteArray, bytes);
        BencodeParser parser(QByteArray::number(bytes.size()) + ":" + bytes);
        const auto value = parser.parse();
        QVERIFY(value);
        QTEST(*value->string(), "expected");
    }

    void findsTheInfoSlice_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QByteArray>("expected"); // null: none
        QTest::newRow("as it stands")
            << QByteArray("d4:infod4:name1:aee ") << QByteArray("d4:name1:ae");
        QTest::newRow("the last of two")
            << QByteArray("d4:infod1:ai1ee4:infod1:bi2eee") << QByteArray("d1:bi2ee");
        QTest::newRow("of any kind") << QByteArray("d4:infoi-07ee") << QByteArray("i-07e");
        QTest::newRow("nested") << QByteArray("d1:xd4:infodeee") << QByteArray();
        QTest::newRow("in a list") << QByteArray("ld4:infodeee") << QByteArray();
        QTest::newRow("capitals") << QByteArray("d4:Infodee") << QByteArray();
    }
    void findsTheInfoSlice()
    {
        QFETCH(QByteArray, input);
        BencodeParser parser(input);
        QVERIFY(parser.parse());
        QTEST(parser.infoSlice() ? parser.infoSlice()->toByteArray() : QByteArray(), "expected");
    }

    void holdsAMillionEmptyLists()
    {
        BencodeParser parser("l" + QByteArray("le").repeated(1'000'000) + "e");
        const auto value = parser.parse();
        QVERIFY(value);
        qsizetype count = 0;
        for (const Bencode &element : value->elements())
            count += element.isList();
        QCOMPARE(count, 1'000'000);
    }
};

QTEST_GUILESS_MAIN(TestBencode)
#include "tst_bencode.moc"
