// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/FolderWalk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>

namespace tavelo::FolderWalk {

namespace {

constexpr qint64 blockBytes = 512; // of st_blocks (POSIX)
// A deeper folder is passed over: each level holds one file descriptor.
constexpr int maxDepth = 128;

struct CloseFolder
{
    void operator()(DIR *folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

Folder openFolder(int parent, const char *name, int flags)
{
    const int descriptor = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags);
    DIR *folder = descriptor < 0 ? nullptr : fdopendir(descriptor);
    if (!folder && descriptor >= 0)
        close(descriptor);
    return Folder(folder);
}

bool isDots(const char *name)
{
    return qstrcmp(name, ".") == 0 || qstrcmp(name, "..") == 0;
}

class Walk
{
public:
    explicit Walk(const std::function<void(const File &)> &visit)
        : m_visit(visit)
    {}

    void enter(const Folder &folder, const QByteArray &path, int depth)
    {
        while (const dirent *entry = readdir(folder.get())) {
            if (!isDots(entry->d_name))
                visitEntry(folder, path + '/' + entry->d_name, entry->d_name, depth);
        }
    }

private:
    void visitEntry(const Folder &folder, const QByteArray &path, const char *name, int depth)
    {
        struct stat facts;
        const int parent = dirfd(folder.get());
        if (fstatat(parent, name, &facts, AT_SYMLINK_NOFOLLOW) != 0)
            return;
        if (S_ISREG(facts.st_mode)) {
            m_visit({path, facts.st_blocks * blockBytes,
                     facts.st_mtim.tv_sec * 1'000'000'000LL + facts.st_mtim.tv_nsec});
        } else if (S_ISDIR(facts.st_mode) && depth < maxDepth) {
            if (const Folder below = openFolder(parent, name, O_NOFOLLOW))
                enter(below, path, depth + 1);
        }
    }

    const std::function<void(const File &)> &m_visit;
};

} // namespace

bool files(const QString &folder, const std::function<void(const File &)> &visit)
{
    const QByteArray path = QFile::encodeName(folder);
    const Folder top = openFolder(AT_FDCWD, path.constData(), 0);
    if (top)
        Walk(visit).enter(top, path, 0);
    return top != nullptr;
}

qint64 directorySize(const QString &folder)
{
    qint64 sum = 0;
    files(folder, [&](const File &file) { sum += file.allocated; });
    return sum;
}

void removeEntries(const QString &folder, const QString &kept)
{
    const auto entries = QDir(folder).entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QFileInfo &entry : entries) {
        if (entry.fileName() == kept)
            continue;
        if (entry.isDir() && !entry.isSymLink())
            QDir(entry.filePath()).removeRecursively();
        else
            QFile::remove(entry.filePath());
    }
}

qint64 freeSpace(const QString &path)
{
    QString existing = QDir::cleanPath(path);
    while (!existing.isEmpty() && existing != QLatin1String("/") && !QFileInfo::exists(existing))
        existing = QFileInfo(existing).path();
    // Not QStorageInfo: it looks for the volume among the mounts, and misses those of a sandbox.
    std::error_code failed;
    const auto space = std::filesystem::space(QFile::encodeName(existing).toStdString(), failed);
    return failed ? 0 : qint64(space.available);
}

} // namespace tavelo::FolderWalk
