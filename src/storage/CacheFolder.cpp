// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "storage/CacheFolder.h"

#include "platform/files/StandardFolders.h"
#include "storage/CacheTag.h"
#include "storage/SettingsStore.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace tavelo {

namespace {

constexpr char chosenName[] = "Tavelo Cache";

// What a clean-up must not reach.
QStringList sparedPaths(const QString &downloads)
{
    return {downloads, StandardFolders::support(), StandardFolders::configuration()};
}

FolderWalk::Ids idsOf(const QStringList &paths)
{
    FolderWalk::Ids ids;
    for (const QString &path : paths) {
        if (const auto id = OpenFolder::idAt(path))
            ids.push_back(*id);
    }
    return ids;
}

bool contains(const FolderWalk::Ids &ids, const OpenFolder &folder)
{
    return std::ranges::find(ids, folder.id()) != ids.end();
}

// Whether the folder is the one at `path`, or above it.
bool isAtOrAbove(const OpenFolder &folder, const QString &path)
{
    QString inner = QFileInfo(path).canonicalFilePath(); // empty when there is none
    while (!inner.isEmpty()) {
        if (OpenFolder::idAt(inner) == folder.id())
            return true;
        const QString outer = QFileInfo(inner).path();
        inner = outer == inner ? QString() : outer;
    }
    return false;
}

bool isEmpty(const OpenFolder &folder)
{
    bool empty = true;
    folder.eachName([&](const char *) { empty = false; });
    return empty;
}

// Empty but for a tag: another run of ours may be choosing the same folder.
bool isFree(const OpenFolder &folder)
{
    bool isFree = true;
    folder.eachName([&](const char *name) { isFree &= qstrcmp(name, CacheTag::fileName) == 0; });
    return isFree;
}

OpenFolder madeBelow(const OpenFolder &parent, const char *name)
{
    if (mkdirat(parent.descriptor(), name, 0700) != 0 && errno != EEXIST)
        return {};
    return parent.below(name);
}

// Not open when it is a link: then it is like any other folder.
OpenFolder openDefault()
{
    const QFileInfo place(SettingsStore::defaultCachePath());
    QDir().mkpath(place.path());
    OpenFolder folder =
        madeBelow(OpenFolder(place.path()), QFile::encodeName(place.fileName()).constData());
    if (folder)
        CacheTag::put(folder);
    return folder;
}

bool isDefault(const QString &path)
{
    return QDir::cleanPath(path) == QDir::cleanPath(SettingsStore::defaultCachePath());
}

OpenFolder openOurs(const QString &path, const FolderWalk::Ids &spared)
{
    OpenFolder folder = isDefault(path) ? openDefault() : OpenFolder();
    if (!folder) {
        folder = OpenFolder(path);
        if (!folder || !CacheTag::isIn(folder))
            return {};
    }
    return contains(spared, folder) ? OpenFolder() : std::move(folder);
}

QString reason(int code)
{
    return QString::fromStdString(std::generic_category().message(code));
}

// Why the folder cannot be ours; none once it is.
std::optional<int> take(const OpenFolder &folder)
{
    const bool taken =
        CacheTag::put(folder) && faccessat(folder.descriptor(), ".", W_OK | X_OK, AT_EACCESS) == 0;
    return taken ? std::nullopt : std::optional(errno);
}

} // namespace

CacheFolder::CacheFolder(QString path, OpenFolder folder, QStringList spared)
    : m_path(std::move(path))
    , m_folder(std::move(folder))
    , m_spared(std::move(spared))
{}

CacheFolder::Standing CacheFolder::standing(const QString &path, const QString &downloads)
{
    if (openOurs(path, idsOf(sparedPaths(downloads))))
        return Standing::Ours;
    const OpenFolder folder(path);
    return folder && !isEmpty(folder) ? Standing::Foreign : Standing::Missing;
}

std::optional<CacheFolder> CacheFolder::inUse(const QString &path, const QString &downloads)
{
    QStringList spared = sparedPaths(downloads);
    for (const QString &place : {path, SettingsStore::defaultCachePath()}) {
        if (OpenFolder folder = openOurs(place, idsOf(spared)))
            return CacheFolder(place, std::move(folder), std::move(spared));
    }
    return std::nullopt;
}

Result<QString> CacheFolder::choose(const QString &path, const QString &downloads)
{
    const QString named = QDir::cleanPath(path);
    const OpenFolder folder(named);
    if (!folder)
        return refusal(named, reason(errno));
    const bool isDefaultOne = OpenFolder::idAt(SettingsStore::defaultCachePath()) == folder.id();
    // In this order: once anything else lies in a folder of ours, its tag is whole.
    const bool isTakable = isFree(folder) || isDefaultOne || CacheTag::isIn(folder);
    if (!isTakable || OpenFolder::idAt(downloads) == folder.id())
        return chooseBelow(folder, named, downloads);
    for (const QString &own : {StandardFolders::support(), StandardFolders::configuration()}) {
        if (isAtOrAbove(folder, own))
            return refusal(named, tr("Tavelo keeps its own data there"));
    }
    const auto failed = take(folder);
    if (failed == EEXIST) // another program's tag
        return chooseBelow(folder, named, downloads);
    return failed ? refusal(named, reason(*failed)) : Result(named);
}

Result<QString> CacheFolder::chooseBelow(const OpenFolder &parent, const QString &path,
                                         const QString &downloads)
{
    const QString chosen = path + QLatin1Char('/') + QLatin1String(chosenName);
    const OpenFolder folder = madeBelow(parent, chosenName);
    if (!folder)
        return refusal(chosen, reason(errno));
    const bool isTakable = isFree(folder) || CacheTag::isIn(folder);
    if (!isTakable || contains(idsOf(sparedPaths(downloads)), folder))
        return refusal(chosen, tr("it holds other files"));
    const auto failed = take(folder);
    return failed ? refusal(chosen, reason(*failed)) : Result(chosen);
}

Error CacheFolder::refusal(const QString &path, const QString &reason)
{
    return {ErrorKind::Storage, tr("The cache cannot be kept in %1: %2.").arg(path, reason), 0};
}

FolderWalk::Ids CacheFolder::spared() const
{
    return idsOf(m_spared);
}

Result<QString> CacheFolder::subfolder(const QString &name) const
{
    const QString path = m_path + QLatin1Char('/') + name;
    const OpenFolder folder = madeBelow(m_folder, QFile::encodeName(name).constData());
    const bool isHeld = std::ranges::any_of(
        m_spared, [&](const QString &spared) { return isAtOrAbove(folder, spared); });
    if (!folder || isHeld)
        return Error{ErrorKind::Storage, tr("The folder %1 cannot be created.").arg(path), 0};
    return path;
}

} // namespace tavelo
