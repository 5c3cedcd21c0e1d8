// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "testlib/Table.h"
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
        const auto row = columns<QByteArray, QString>("input", "expected");
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
        columns<QByteArray>("input");
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
        const auto row = columns<QByteArray, QString>("bytes", "expected");
        const QString bad = u"\uFFFD"_qs;
        row("well-formed", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xAC", u"a\u00E9\u20AC\U0001F3AC"_qs);
        row("byte order mark stays", "\xEF\xBB\xBFx", u"\uFEFFx"_qs);
        row("cut sequence is one", "\xE2\x82z", bad + "z");
        row("cut at the end", "z\xF0\x9F\x8E", "z" + bad);
        row("stray trailing bytes", "\x80\xBF", bad + bad);
        row("overlong", "\xC0\xAF", bad + bad);
        row("overlong of three", "\xE0\x80\x80", bad + bad + bad);
        row("surrogate", "\xED\xA0\x80", bad + bad + bad);
        row("past U+10FFFF", "\xF4\x90\x80\x80", bad.repeated(4));
        row("a lead in a sequence", "\xF1\x80\xC3\xA9", bad + u"\u00E9"_qs);
        row("zero byte", QByteArray("a\0b", 3), QString::fromLatin1("a\0b", 3));
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
        // expected: null: none
        const auto row = columns<QByteArray, QByteArray>("input", "expected");
        row("as it stands", "d4:infod4:name1:aee ", "d4:name1:ae");
        row("the last of two", "d4:infod1:ai1ee4:infod1:bi2eee", "d1:bi2ee");
        row("of any kind", "d4:infoi-07ee", "i-07e");
        row("nested", "d1:xd4:infodeee", QByteArray());
        row("in a list", "ld4:infodeee", QByteArray());
        row("capitals", "d4:Infodee", QByteArray());
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
