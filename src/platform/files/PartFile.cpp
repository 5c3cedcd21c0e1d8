// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/PartFile.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QScopeGuard>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavelo {

namespace {

constexpr int mostNames = 100; // tried before a folder is given up

/// Long past: whatever is written afterwards sets another one, however coarse the clock.
constexpr timespec sealTime{946'684'800, 0};

QString newPath(const QString &folder)
{
    const quint64 random = QRandomGenerator::system()->generate64();
    return QDir(QDir::cleanPath(folder))
        .filePath(QStringLiteral(".tavelo-%1-%2.part")
                      .arg(QCoreApplication::applicationPid())
                      .arg(random, 16, 16, QLatin1Char('0')));
}

bool leadsTo(const QString &path, const struct stat &file)
{
    struct stat found = {};
    return lstat(QFile::encodeName(path).constData(), &found) == 0 && found.st_dev == file.st_dev &&
           found.st_ino == file.st_ino;
}

bool sameTime(const timespec &a, const timespec &b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

void removeIfAbandoned(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const int file = open(name.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return;
    const auto closed = qScopeGuard([file] { close(file); });
    struct stat found = {};
    if (fstat(file, &found) == 0 && S_ISREG(found.st_mode) && found.st_uid == geteuid() &&
        flock(file, LOCK_EX | LOCK_NB) == 0 && leadsTo(path, found))
        unlink(name.constData());
}

} // namespace

Result<std::unique_ptr<PartFile>> PartFile::create(const QString &folder, Write write)
{
    for (int i = 0; i < mostNames; ++i) {
        const QString path = newPath(folder);
        const int file = open(QFile::encodeName(path).constData(),
                              O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (file < 0 && errno != EEXIST)
            return failure(errno);
        if (file < 0)
            continue;
        std::unique_ptr<PartFile> part(new PartFile(path, file, write));
        if (part->lock())
            return part;
    }
    return failure(EEXIST);
}

PartFile::PartFile(QString path, int file, Write write)
    : m_path(std::move(path))
    , m_file(file)
    , m_write(std::move(write))
{
    struct stat made = {};
    if (fstat(m_file, &made) == 0)
        m_mode = made.st_mode & 0777;
    fchmod(m_file, 0600);
}

PartFile::~PartFile()
{
    unlink(QFile::encodeName(m_path).constData()); // whatever has taken its place
    close(m_file);
}

/// False when a sweep came between the file's creation and its lock.
bool PartFile::lock()
{
    if (flock(m_file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false;
    return isInPlace();
}

std::optional<Error> PartFile::append(const char *bytes, qint64 count)
{
    while (count > 0) {
        const ssize_t written = m_write(m_file, bytes, static_cast<size_t>(count), m_size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return failure(written < 0 ? errno : ENOSPC);
        bytes += written;
        count -= written;
        m_size += written;
    }
    return {};
}

std::optional<Error> PartFile::clear()
{
    if (ftruncate(m_file, 0) != 0)
        return failure(errno);
    m_size = 0;
    return {};
}

void PartFile::publish()
{
    fchmod(m_file, m_mode);
}

bool PartFile::isInPlace() const
{
    struct stat own = {};
    return fstat(m_file, &own) == 0 && own.st_size == m_size && leadsTo(m_path, own);
}

void PartFile::seal()
{
    const timespec times[] = {sealTime, sealTime};
    futimens(m_file, times);
}

bool PartFile::isUntouched() const
{
    struct stat own = {};
    return fstat(m_file, &own) == 0 && sameTime(own.st_mtim, sealTime) && isInPlace();
}

void PartFile::sweep(const QString &folder)
{
    const QDir dir(folder);
    const QStringList parts =
        dir.entryList({QStringLiteral(".tavelo-*.part")}, QDir::Files | QDir::Hidden);
    for (const QString &name : parts)
        removeIfAbandoned(dir.filePath(name));
}

Error PartFile::gone()
{
    return {ErrorKind::Storage, tr("The file was removed or changed while it was downloaded.")};
}

Error PartFile::failure(int code)
{
    const auto text = [code] {
        switch (code) {
        case ENOSPC:
            return tr("The disk is full.");
        case EDQUOT:
            return tr("The disk quota is used up.");
        case EFBIG:
            return tr("The file is too large for this disk.");
        case ENOENT:
        case ENOTDIR:
            return tr("The folder is gone.");
        case EACCES:
        case EPERM:
        case EROFS:
            return tr("The folder cannot be written to.");
        default:
            return tr("The file could not be written: %1").arg(qt_error_string(code));
        }
    };
    return {ErrorKind::Storage, text()};
}

} // namespace tavelo
