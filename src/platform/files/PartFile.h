// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QCoreApplication>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

#include <sys/types.h>

namespace tavelo {

/// A hidden file that a download fills, in the folder of the finished file, so that moving it there
/// is a rename. It outlives this object, and the process.
///
/// It stays open and locked (flock) for as long as this object lives, so that neither a sweep nor
/// another process takes it.
class PartFile
{
    Q_DECLARE_TR_FUNCTIONS(PartFile)

public:
    /// As ::pwrite; a test puts a full disk in its place.
    using Write = std::function<ssize_t(int, const void *, size_t, off_t)>;

    /// Where the part of the download `name` lies, whose finished file comes into `folder`.
    static QString pathIn(const QString &folder, const QString &name);

    /// Opens the part file at `path`, or makes it. Only the user can read it until it is published.
    static Result<std::unique_ptr<PartFile>> open(const QString &path, Write write);
    /// Closes it.
    ~PartFile();
    Q_DISABLE_COPY_MOVE(PartFile)

    qint64 size() const { return m_size; } // bytes, gaps included

    /// ErrorKind::NoSpace when there is no room for it.
    std::optional<Error> write(qint64 place, const char *bytes, qint64 count);
    /// How many bytes were read; fewer than `count` at the end or when it fails. Any thread.
    qint64 read(qint64 place, char *to, qint64 count) const;
    /// What was written is on the disk when this returns without an error.
    std::optional<Error> sync();
    std::optional<Error> truncate(qint64 size);

    /// Whether its path still leads to it and it is as long as it was made.
    bool isInPlace() const;
    static Error gone(); // what is said when it is not

    /// For the time of a pause: `isUntouched` is false after any change by somebody else.
    void seal();
    bool isUntouched() const;

    /// Gives it the permissions of any new file and the name `destination`, in the same folder, in
    /// place of a file there. It is on the disk before it has the name, and the name before this
    /// returns.
    std::optional<Error> publish(const QString &destination);
    void remove();

    /// Removes the part files in `folder` that no process holds, but those of these names. Where
    /// the file system knows no locks, nothing is removed.
    static void sweep(const QString &folder, const QStringList &spared);

private:
    PartFile(QString path, int file, Write write);
    bool lock();
    static Error failure(int code);

    QString m_path;
    int m_file;
    Write m_write;
    qint64 m_size = 0;
};

} // namespace tavelo
