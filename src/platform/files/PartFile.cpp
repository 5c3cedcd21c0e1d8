// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/PartFile.h"

#include "platform/files/FileContent.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSet>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavelo {

namespace {

constexpr int mostTries = 20; // to get a file that sweeps take away

/// Long past: whatever is written afterwards sets another one, however coarse the clock.
constexpr timespec sealTime{946'684'800, 0};

/// Read from the system's own file, for ::umask tells it only by changing it for all threads.
mode_t newFileMode()
{
    constexpr mode_t all = 0666;
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0600;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("Umask:"))
            return all & ~static_cast<mode_t>(line.mid(6).trimmed().toUInt(nullptr, 8));
    }
    return 0600;
}

QString fileName(const QString &name)
{
    return QStringLiteral(".tavelo-%1.part").arg(name);
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
    const int file = ::open(name.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return;
    const auto closed = qScopeGuard([file] { ::close(file); });
    struct stat found = {};
    if (fstat(file, &found) == 0 && S_ISREG(found.st_mode) && found.st_uid == geteuid() &&
        flock(file, LOCK_EX | LOCK_NB) == 0 && leadsTo(path, found))
        unlink(name.constData());
}

} // namespace

QString PartFile::pathIn(const QString &folder, const QString &name)
{
    return QDir(QDir::cleanPath(folder)).filePath(fileName(name));
}

Result<std::unique_ptr<PartFile>> PartFile::open(const QString &path, Write write)
{
    for (int i = 0; i < mostTries; ++i) {
        const int file = ::open(QFile::encodeName(path).constData(),
                                O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
        if (file < 0)
            return failure(errno);
        std::unique_ptr<PartFile> part(new PartFile(path, file, write));
        if (part->lock())
            return part;
    }
    return Error{ErrorKind::Storage, tr("Another program uses the file.")};
}

PartFile::PartFile(QString path, int file, Write write)
    : m_path(std::move(path))
    , m_file(file)
    , m_write(std::move(write))
{
    struct stat found = {};
    if (fstat(m_file, &found) == 0)
        m_size = found.st_size;
}

PartFile::~PartFile()
{
    ::close(m_file);
}

/// False when a sweep came between the file's opening and its lock, or somebody else has it.
bool PartFile::lock()
{
    if (flock(m_file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false;
    return isInPlace();
}

std::optional<Error> PartFile::write(qint64 place, const char *bytes, qint64 count)
{
    while (count > 0) {
        const ssize_t written = m_write(m_file, bytes, static_cast<size_t>(count), place);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return failure(written < 0 ? errno : ENOSPC);
        bytes += written;
        count -= written;
        place += written;
        m_size = std::max(m_size, place);
    }
    return {};
}

qint64 PartFile::read(qint64 place, char *to, qint64 count) const
{
    qint64 done = 0;
    while (done < count) {
        const ssize_t taken =
            ::pread(m_file, to + done, static_cast<size_t>(count - done), place + done);
        if (taken < 0 && errno == EINTR)
            continue;
        if (taken <= 0)
            break;
        done += taken;
    }
    return done;
}

std::optional<Error> PartFile::sync()
{
    return ::fdatasync(m_file) == 0 ? std::nullopt : std::optional(failure(errno));
}

std::optional<Error> PartFile::truncate(qint64 size)
{
    if (::ftruncate(m_file, size) != 0)
        return failure(errno);
    m_size = size;
    return {};
}

bool PartFile::isInPlace() const
{
    struct stat own = {};
    return fstat(m_file, &own) == 0 && own.st_size == m_size && S_ISREG(own.st_mode) &&
           own.st_uid == geteuid() && leadsTo(m_path, own);
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

std::optional<Error> PartFile::publish(const QString &destination)
{
    ::fchmod(m_file, newFileMode());
    if (::fsync(m_file) != 0 || ::rename(QFile::encodeName(m_path).constData(),
                                         QFile::encodeName(destination).constData()) != 0)
        return failure(errno);
    m_path = destination;
    return FileContent::syncFolder(QFileInfo(destination).path());
}

void PartFile::remove()
{
    ::unlink(QFile::encodeName(m_path).constData()); // whatever has taken its place
}

void PartFile::sweep(const QString &folder, const QStringList &spared)
{
    QSet<QString> sparedFiles;
    for (const QString &name : spared)
        sparedFiles.insert(fileName(name));
    const QDir dir(folder);
    const QStringList parts =
        dir.entryList({fileName(QStringLiteral("*"))}, QDir::Files | QDir::Hidden);
    for (const QString &part : parts) {
        if (!sparedFiles.contains(part))
            removeIfAbandoned(dir.filePath(part));
    }
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
    const bool isFull = code == ENOSPC || code == EDQUOT;
    return {isFull ? ErrorKind::NoSpace : ErrorKind::Storage, text()};
}

} // namespace tavelo
