// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

#include <sys/types.h>

namespace tavelo {

/// A hidden file that a transfer fills, in the folder of the finished file, so that moving it there
/// is a rename. Removed with this object, unless somebody has moved it away.
///
/// It stays open and locked (flock) for as long as this object lives, which is how a sweep tells
/// live part files from those that a dead process left: the system drops a lock with its process,
/// whereas a process id may long belong to another one.
class PartFile
{
    Q_DECLARE_TR_FUNCTIONS(PartFile)

public:
    /// As ::pwrite; a test puts a full disk in its place.
    using Write = std::function<ssize_t(int, const void *, size_t, off_t)>;

    /// Only the user can read it until it is published.
    static Result<std::unique_ptr<PartFile>> create(const QString &folder, Write write);
    ~PartFile();
    Q_DISABLE_COPY_MOVE(PartFile)

    const QString &path() const { return m_path; }
    qint64 size() const { return m_size; } // bytes written

    std::optional<Error> append(const char *bytes, qint64 count);
    std::optional<Error> clear();
    /// Gives it the permissions of any new file.
    void publish();

    /// Whether its path still leads to it and it holds what was written.
    bool isInPlace() const;
    static Error gone(); // what is said when it is not

    /// For the time of a pause: `isUntouched` is false after any change by somebody else.
    void seal();
    bool isUntouched() const;

    /// Removes the part files in `folder` that no living process holds. Where the file system
    /// knows no locks, nothing is removed.
    static void sweep(const QString &folder);

private:
    PartFile(QString path, int file, Write write);
    bool lock();
    static Error failure(int code);

    QString m_path;
    int m_file;
    Write m_write;
    mode_t m_mode = 0; // of a new file, as the system made it
    qint64 m_size = 0;
};

} // namespace tavelo
