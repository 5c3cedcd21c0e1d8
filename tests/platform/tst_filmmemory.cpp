// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/FilmMemory.h"
#include "testlib/Table.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

using namespace tavelo;

namespace {

const QUrl address("https://films.example/download/one/film.mp4");

KeptFilm filmOf(const QUrl &url)
{
    return {
        .key = KeptFilm::keyOf(url),
        .version = {.total = 5'000'000'000, .validator = "\"tag\""},
        .pieces = {{0, "head"}, {4'999'999'990, "the index."}, {70'000, QByteArray(3000, 'm')}}};
}

QByteArray with(const QByteArray &file, qsizetype at, quint32 number)
{
    QByteArray changed = file;
    qToBigEndian(number, changed.data() + at);
    return changed;
}

QByteArray resealed(const QByteArray &file)
{
    const QByteArray content = file.chopped(32);
    return content + QCryptographicHash::hash(content, QCryptographicHash::Blake2b_256);
}

} // namespace

class FilmMemoryTest : public QObject
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;

    QString folder() const { return m_folder->path() + "/films"; }
    QStringList files() const { return QDir(folder()).entryList(QDir::Files); }

private Q_SLOTS:
    void init() { m_folder.emplace(); }

    void filmsOutliveTheProgram()
    {
        const QUrl other("https://films.example/download/one/film.mp4?other");
        {
            FilmMemory memory;
            memory.store(filmOf(address)); // there is no folder yet
            memory.setFolder(folder());
            memory.store(filmOf(address));
            KeptFilm newer = filmOf(other);
            memory.store(newer);
            newer.pieces.removeLast();
            newer.version.source = address;
            memory.store(newer);
        }
        FilmMemory memory;
        memory.setFolder(folder());
        QCOMPARE(memory.load(address).result(), filmOf(address));
        KeptFilm second = filmOf(other);
        second.pieces.removeLast();
        QCOMPARE(memory.load(other).result(), second);
        QCOMPARE(files().size(), 2);
        QVERIFY(!QFile(folder() + '/' + files().first()).permissions().testFlag(QFile::ReadOther));

        memory.drop(other);
        QVERIFY(!memory.load(other).result());
        memory.setFolder(m_folder->path() + "/missing/films");
        memory.store(filmOf(address)).waitForFinished();
        QVERIFY(!memory.load(address).result());
        QVERIFY(!QDir(m_folder->path() + "/missing").exists());
    }

    void theOldestGo()
    {
        FilmMemory memory;
        memory.setFolder(folder());
        const auto numbered = [](int i) {
            return QUrl(QString("https://films.example/%1").arg(i));
        };
        for (int i = 0; i < FilmMemory::maxFilms; ++i) {
            memory.store(filmOf(numbered(i))).waitForFinished();
            QFile file(folder() + '/' + KeptFilm::keyOf(numbered(i)).toHex() + ".film");
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(i - 100),
                                     QFileDevice::FileModificationTime));
        }
        memory.store(filmOf(numbered(0))); // opened again
        memory.store(filmOf(address)).waitForFinished();
        QCOMPARE(files().size(), FilmMemory::maxFilms);
        QVERIFY(memory.load(numbered(0)).result());
        QVERIFY(!memory.load(numbered(1)).result());
        memory.clear().waitForFinished();
        QCOMPARE(files(), QStringList());
    }

    void whatIsDamagedIsRemoved_data()
    {
        const auto add = columns<QByteArray>("content");
        const QByteArray whole = filmOf(address).encoded();
        constexpr qsizetype countAt = 4 + 32 + 8 + 2 + 5; // of the pieces
        constexpr qsizetype piecesAt = countAt + 2;
        add("empty", "");
        add("something else", "a letter to nobody");
        add("cut", whole.chopped(1));
        add("cut early", whole.first(60));
        add("more behind it", whole + "x");
        add("another film's", filmOf(QUrl("https://films.example/")).encoded());
        add("a bit that fell over", with(whole, whole.size() - 100, 0));
        add("another form", resealed(with(whole, 0, 0)));
        add("more pieces", resealed(with(whole, countAt, 0xffff0000)));
        add("a piece beyond the film", resealed(with(whole, piecesAt, 2)));
        add("a piece before it", resealed(with(whole, piecesAt, 0xffffffff)));
        add("a giant piece", resealed(with(whole, piecesAt + 8, 0xffffffff)));
        add("an empty piece", resealed(with(whole, piecesAt + 8, 0)));
        add("a giant file", QByteArray(KeptFilm::maxBytes + 1, 'x'));
    }
    void whatIsDamagedIsRemoved()
    {
        QFETCH(QByteArray, content);
        FilmMemory memory;
        memory.setFolder(folder());
        memory.store(filmOf(address)).waitForFinished();
        QFile file(folder() + '/' + files().first());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        QVERIFY(!memory.load(address).result());
        QVERIFY(!file.exists());
    }

    void tooMuchIsNotKept()
    {
        FilmMemory memory;
        memory.setFolder(folder());
        memory.store(filmOf(address));
        KeptFilm film = filmOf(address);
        film.pieces.append({1'000'000, QByteArray(KeptFilm::maxBytes, 'x')});
        memory.store(film);
        QCOMPARE(memory.load(address).result(), filmOf(address));
    }
};

QTEST_GUILESS_MAIN(FilmMemoryTest)
#include "tst_filmmemory.moc"
