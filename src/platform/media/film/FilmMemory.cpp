// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/FilmMemory.h"

#include "platform/ThreadPool.h"
#include "platform/files/FileContent.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QPointer>

namespace tavelo {

namespace {

const QString suffix = QStringLiteral(".film");

QString pathOf(const QString &folder, const QByteArray &key)
{
    return folder + QLatin1Char('/') + QString::fromLatin1(key.toHex()) + suffix;
}

std::optional<KeptFilm> loaded(const QString &path, const QByteArray &key)
{
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || info.isSymLink() || !file.open(QIODevice::ReadOnly))
        return {};
    auto film = KeptFilm::read(file);
    if (film && film->key == key)
        return film;
    file.remove();
    return {};
}

void dropAllBut(qsizetype newest, const QString &folder)
{
    const auto films =
        QDir(folder).entryInfoList({QLatin1Char('*') + suffix}, QDir::Files, QDir::Time);
    for (qsizetype i = newest; i < films.size(); ++i)
        QFile::remove(films[i].filePath());
}

void stored(const QString &folder, const KeptFilm &film)
{
    const QByteArray content = film.encoded();
    if (content.isEmpty())
        return;
    QDir().mkdir(folder);
    if (QFileInfo(folder).isDir() && FileContent::replace(pathOf(folder, film.key), content))
        dropAllBut(FilmMemory::maxFilms, folder);
}

} // namespace

FilmMemory &FilmMemory::shared()
{
    static QPointer<FilmMemory> memory;
    if (!memory)
        memory = new FilmMemory(QCoreApplication::instance());
    return *memory;
}

FilmMemory::FilmMemory(QObject *parent)
    : QObject(parent)
{
    m_disk.setMaxThreadCount(1);
}

FilmMemory::~FilmMemory()
{
    m_disk.waitForDone();
}

void FilmMemory::setFolder(const QString &folder)
{
    m_folder = folder;
}

QFuture<std::optional<KeptFilm>> FilmMemory::load(const QUrl &url)
{
    return runOnPool(
        [folder = m_folder, key = KeptFilm::keyOf(url)] {
            return folder.isEmpty() ? std::nullopt : loaded(pathOf(folder, key), key);
        },
        &m_disk);
}

QFuture<void> FilmMemory::store(KeptFilm film)
{
    return runOnPool(
        [folder = m_folder, film = std::move(film)] {
            if (!folder.isEmpty())
                stored(folder, film);
        },
        &m_disk);
}

QFuture<void> FilmMemory::drop(const QUrl &url)
{
    return runOnPool(
        [folder = m_folder, key = KeptFilm::keyOf(url)] {
            if (!folder.isEmpty())
                QFile::remove(pathOf(folder, key));
        },
        &m_disk);
}

QFuture<void> FilmMemory::clear()
{
    return runOnPool(
        [folder = m_folder] {
            if (!folder.isEmpty())
                dropAllBut(0, folder);
        },
        &m_disk);
}

} // namespace tavelo
