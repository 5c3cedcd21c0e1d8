// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/ResumeToken.h"

#include <QTest>

using namespace tavelo;

class tst_ResumeToken : public QObject
{
    Q_OBJECT

private:
    const ResumeToken m_token{QUrl("https://example.org/a%2Fb.mp4?c=d"),
                              "/folder/.tavelo-1-ü.part",
                              5'000'000'000,
                              {QUrl("https://mirror.example.org/b"), 9'000'000'000, "\"tag\""}};

private Q_SLOTS:
    void comesBackWhole()
    {
        const auto read = ResumeToken::fromBytes(m_token.toBytes());
        QVERIFY(read);
        QVERIFY(*read == m_token);
    }

    void isRefusedWhenDamaged()
    {
        const QByteArray whole = m_token.toBytes();
        for (qsizetype i = 0; i < whole.size(); ++i) {
            QByteArray changed = whole;
            changed[i] = static_cast<char>(changed[i] ^ 1);
            QVERIFY2(!ResumeToken::fromBytes(changed), qPrintable(QString::number(i)));
            QVERIFY2(!ResumeToken::fromBytes(whole.first(i)), qPrintable(QString::number(i)));
        }
        QVERIFY(!ResumeToken::fromBytes(whole + '\0'));
    }

    void isRefusedWithoutBytesOrValidator()
    {
        ResumeToken empty = m_token;
        empty.length = 0;
        QVERIFY(!ResumeToken::fromBytes(empty.toBytes()));
        ResumeToken unproven = m_token;
        unproven.version.validator.clear();
        QVERIFY(!ResumeToken::fromBytes(unproven.toBytes()));
    }
};

QTEST_GUILESS_MAIN(tst_ResumeToken)
#include "tst_resumetoken.moc"
