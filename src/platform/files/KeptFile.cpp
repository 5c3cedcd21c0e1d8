// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/KeptFile.h"

#include "platform/Log.h"
#include "platform/ThreadPool.h"
#include "platform/files/FileContent.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

namespace tavelo {

namespace {

constexpr qint64 spacing = 1000; // milliseconds between the beginnings of two writes

// Behind a link to it, the file itself, so that all its states lie in one folder.
QString resolved(const QString &path)
{
    const QString real = QFileInfo(path).canonicalFilePath();
    return real.isEmpty() ? path : real;
}

bool isMissing(const QString &path)
{
    struct stat facts = {};
    return ::stat(QFile::encodeName(path).constData(), &facts) != 0 &&
           (errno == ENOENT || errno == ENOTDIR);
}

/// Makes the file at `path` the previous one. It stays in its place until the new one takes that;
/// only where there are no hard links is there a moment with the previous one alone. A failure here
/// leaves an older previous one, which is no reason not to write.
void keepPrevious(const QString &path)
{
    const QByteArray current = QFile::encodeName(path);
    const QByteArray previous = QFile::encodeName(KeptFile::previousOf(path));
    const QByteArray link = previous + ".new";
    ::unlink(link.constData());
    if (::linkat(AT_FDCWD, current.constData(), AT_FDCWD, link.constData(), AT_SYMLINK_FOLLOW) ==
        0) {
        (void)::rename(link.constData(), previous.constData());
        ::unlink(link.constData()); // still there when both were one file already
    } else if (errno != ENOENT) {
        (void)::rename(current.constData(), previous.constData());
    }
}

QString ageOf(const QString &path)
{
    const qint64 minutes = QFileInfo(path).lastModified().secsTo(QDateTime::currentDateTime()) / 60;
    if (minutes < 1)
        return KeptFile::tr("less than a minute ago");
    if (minutes < 120)
        return KeptFile::tr("%1 min ago").arg(minutes);
    if (minutes < 48 * 60)
        return KeptFile::tr("%1 hours ago").arg(minutes / 60);
    return KeptFile::tr("%1 days ago").arg(minutes / (24 * 60));
}

} // namespace

KeptFile::KeptFile(const QString &path, Owner owner)
    : m_path(resolved(path))
    , m_owner(std::move(owner))
{
    m_writer.setMaxThreadCount(1);
    m_wait.setSingleShot(true);
    connect(&m_wait, &QTimer::timeout, this, &KeptFile::begin);
    connect(&m_watcher, &QFutureWatcherBase::finished, this, &KeptFile::settle);
}

KeptFile::~KeptFile()
{
    flush();
}

void KeptFile::read()
{
    m_reading = true;
    const bool wasClosed = std::exchange(m_closed, false);
    const Found newest = take(m_path);
    if (newest == Found::Closed)
        close(m_reason);
    else if (newest != Found::Whole)
        recover(newest);
    else if (wasClosed && !m_closed) // what was changed meanwhile may stand against what is in it
        keepCopy(FileContent::read(m_path, m_owner.maxBytes),
                 tr("%1 can be read again. The file as it was is kept as %2."));
    m_toldClosed = m_closed;
    m_reading = false;
    if (m_dirty && !m_closed)
        schedule();
}

void KeptFile::recover(Found newest)
{
    QString text = tr("%1 could not be found.").arg(m_owner.name);
    if (newest == Found::Damaged) {
        const auto aside = putAside(m_path);
        if (!aside)
            close(tr("the damaged file cannot be put aside"));
        else
            text = tr("%1 could not be read. The damaged file is kept as %2.")
                       .arg(m_owner.name, *aside);
    }
    const QString previous = previousOf(m_path);
    const Found older = take(previous);
    if (older == Found::Closed)
        close(m_reason);
    else if (older == Found::Damaged && !putAside(previous))
        close(tr("the damaged file cannot be put aside"));
    if (m_closed || (newest == Found::Nothing && older == Found::Nothing))
        return; // told already, or the first start
    if (older == Found::Whole) {
        text += QLatin1Char(' ') + tr("What was saved %1 is used instead.").arg(ageOf(previous));
        m_dirty = true;
    }
    tell(text);
}

KeptFile::Found KeptFile::take(const QString &path)
{
    if (isMissing(path))
        return Found::Nothing;
    const auto content = FileContent::load(path, m_owner.maxBytes);
    if (content)
        return m_owner.read(*content) ? Found::Whole : Found::Damaged;
    m_reason = content.error().text;
    return content.error().kind == ErrorKind::Storage ? Found::Closed : Found::Damaged;
}

QString KeptFile::freeName() const
{
    const QFileInfo file(m_path);
    const QString stem =
        file.path() + QLatin1Char('/') + file.completeBaseName() + QLatin1String(".unreadable-");
    for (int number = 1;; ++number) {
        const QFileInfo aside(stem + QString::number(number) + QLatin1Char('.') + file.suffix());
        if (!aside.exists() && !aside.isSymLink())
            return aside.filePath();
    }
}

std::optional<QString> KeptFile::putAside(const QString &path) const
{
    const QString aside = freeName();
    return QFile::rename(path, aside) ? std::optional(aside) : std::nullopt;
}

void KeptFile::keepAside(const QByteArray &content)
{
    keepCopy(content,
             tr("%1 held parts that could not be read. The file as it was is kept as %2."));
}

void KeptFile::keepCopy(const QByteArray &content, const QString &text)
{
    const QString aside = freeName();
    if (const auto failed = FileContent::put(aside, content))
        return close(failed->text);
    tell(text.arg(m_owner.name, aside));
}

void KeptFile::close(const QString &reason)
{
    m_closed = true;
    if (!std::exchange(m_toldClosed, true))
        tell(tr("%1 could not be read: %2. Until it can, changes are not saved.")
                 .arg(m_owner.name, reason));
}

void KeptFile::save()
{
    m_dirty = true;
    schedule();
}

void KeptFile::hurry()
{
    m_sinceWrite.invalidate();
    schedule();
}

void KeptFile::flush()
{
    finish();
    m_dirty = m_dirty || m_failed;
    begin();
    finish();
}

void KeptFile::finish()
{
    while (m_writing) {
        m_writing->waitForFinished();
        settle();
    }
}

void KeptFile::schedule()
{
    const qint64 left = m_sinceWrite.isValid() ? spacing - m_sinceWrite.elapsed() : 0;
    if (left <= 0)
        begin();
    else if (!m_wait.isActive())
        m_wait.start(int(left));
}

void KeptFile::begin()
{
    if (m_writing || !m_dirty || m_reading)
        return;
    m_wait.stop();
    m_sinceWrite.start();
    if (m_closed)
        read();
    if (m_closed || m_writing)
        return;
    m_dirty = false;
    m_writing = runOnPool(
        [path = m_path, encode = m_owner.snapshot()] {
            return FileContent::put(path, encode(), [&] { keepPrevious(path); });
        },
        &m_writer);
    m_watcher.setFuture(*m_writing);
}

void KeptFile::settle()
{
    if (!m_writing || !m_writing->isFinished())
        return;
    const std::optional<Error> failure = m_writing->result();
    m_writing.reset();
    if (failure && !m_failed)
        tell(tr("%1 could not be saved: %2").arg(m_owner.name, failure->text));
    m_failed = failure.has_value();
    if (m_dirty)
        schedule();
}

void KeptFile::tell(const QString &text)
{
    qCInfo(logStorage).noquote() << text;
    QMetaObject::invokeMethod(
        this, [this, text] { Q_EMIT troubled(text); }, Qt::QueuedConnection);
}

} // namespace tavelo
