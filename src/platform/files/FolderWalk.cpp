// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/FolderWalk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace tavelo::FolderWalk {

namespace {

constexpr qint64 blockBytes = 512; // of st_blocks (POSIX)
// A deeper folder is passed over: each level holds one file descriptor.
constexpr int maxDepth = 128;

// What may be entered from a folder on.
class Bounds
{
public:
    Bounds(const OpenFolder &top, const Ids &spared)
        : m_device(top.id().device)
        , m_spared(spared)
    {}

    // Asked of the folder that was opened, not of its name: that may be another one's by now.
    OpenFolder enter(const OpenFolder &parent, const char *name) const
    {
        OpenFolder folder = parent.below(name);
        if (!folder || (folder.id().device == m_device && !isSpared(folder.id())))
            return folder;
        errno = EXDEV;
        return {};
    }

private:
    bool isSpared(const OpenFolder::Id &id) const
    {
        return std::ranges::find(m_spared, id) != m_spared.end();
    }

    dev_t m_device;
    const Ids &m_spared;
};

class Walk
{
public:
    Walk(const Bounds &bounds, const std::function<void(const File &)> &visit)
        : m_bounds(bounds)
        , m_visit(visit)
    {}

    // `prefix`: the folder's path with a slash at its end, empty for the first.
    void enter(const OpenFolder &folder, const QByteArray &prefix, int depth)
    {
        folder.eachName([&](const char *name) { visitEntry(folder, prefix, name, depth); });
    }

private:
    void visitEntry(const OpenFolder &folder, const QByteArray &prefix, const char *name, int depth)
    {
        struct stat facts;
        if (fstatat(folder.descriptor(), name, &facts, AT_SYMLINK_NOFOLLOW) != 0)
            return;
        if (S_ISREG(facts.st_mode)) {
            m_visit({prefix + name, facts.st_blocks * blockBytes,
                     facts.st_mtim.tv_sec * 1'000'000'000LL + facts.st_mtim.tv_nsec});
        } else if (S_ISDIR(facts.st_mode) && depth < maxDepth) {
            if (const OpenFolder below = m_bounds.enter(folder, name))
                enter(below, prefix + name + '/', depth + 1);
        }
    }

    const Bounds &m_bounds;
    const std::function<void(const File &)> &m_visit;
};

void removeBelow(const OpenFolder &folder, const QByteArrayList &kept, const Bounds &bounds,
                 int depth)
{
    QByteArrayList names; // first all of them: a folder that changes may be listed with gaps
    folder.eachName([&](const char *name) { names.append(name); });
    for (const QByteArray &name : names) {
        if (kept.contains(name) || unlinkat(folder.descriptor(), name.constData(), 0) == 0)
            continue;
        const OpenFolder below = bounds.enter(folder, name.constData());
        if (!below || depth == maxDepth)
            continue;
        removeBelow(below, {}, bounds, depth + 1);
        unlinkat(folder.descriptor(), name.constData(), AT_REMOVEDIR);
    }
}

} // namespace

void files(const OpenFolder &folder, const Ids &spared,
           const std::function<void(const File &)> &visit)
{
    if (folder)
        Walk(Bounds(folder, spared), visit).enter(folder, {}, 0);
}

qint64 directorySize(const OpenFolder &folder, const Ids &spared)
{
    qint64 sum = 0;
    files(folder, spared, [&](const File &file) { sum += file.allocated; });
    return sum;
}

bool removeFile(const OpenFolder &folder, const QByteArray &path, const Ids &spared)
{
    const Bounds bounds(folder, spared);
    const OpenFolder *parent = &folder;
    OpenFolder entered;
    QByteArrayList names = path.split('/');
    const QByteArray last = names.takeLast();
    for (const QByteArray &name : names) {
        OpenFolder next = bounds.enter(*parent, name.constData());
        if (!next)
            return errno == ENOENT;
        entered = std::move(next);
        parent = &entered;
    }
    return unlinkat(parent->descriptor(), last.constData(), 0) == 0 || errno == ENOENT;
}

void removeEntries(const OpenFolder &folder, const QByteArrayList &kept, const Ids &spared)
{
    if (folder)
        removeBelow(folder, kept, Bounds(folder, spared), 0);
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
