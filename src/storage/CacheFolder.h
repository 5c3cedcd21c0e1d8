// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"
#include "platform/files/FolderWalk.h"

#include <QCoreApplication>

namespace tavelo {

/// A folder for the cache that is ours, held open: the default one, or one with our tag. Only in
/// such a folder is anything written or removed; never in the folder of saved downloads or in those
/// of the program's own data, wherever they lie, which therefore are no cache folders themselves.
/// Any thread.
class CacheFolder
{
    Q_DECLARE_TR_FUNCTIONS(CacheFolder)

public:
    enum class Standing {
        Ours,
        Missing, // it cannot be opened, or is empty as the place of a disk that is not mounted
        Foreign, // something else is in it
    };

    static Standing standing(const QString &path, const QString &downloads);

    /// The folder at `path` when it is ours, in its place the default one; that one is created.
    /// None when neither can be had.
    static std::optional<CacheFolder> inUse(const QString &path, const QString &downloads);

    /// Makes a folder that the user names ours, and returns it: itself when it is empty or ours,
    /// else a folder in it, so that nothing else in it is touched. ErrorKind::Storage, for the user
    /// to read, when it cannot be written, or holds the program's own data.
    static Result<QString> choose(const QString &path, const QString &downloads);

    const QString &path() const { return m_path; }
    const OpenFolder &folder() const { return m_folder; }
    /// The folders that are not to be entered, as they are now.
    FolderWalk::Ids spared() const;

    /// The path of the folder of that name in it, which is created. ErrorKind::Storage when it
    /// cannot be, is a link, or what is not to be entered lies in it.
    Result<QString> subfolder(const QString &name) const;

private:
    CacheFolder(QString path, OpenFolder folder, QStringList spared);

    static Result<QString> chooseBelow(const OpenFolder &parent, const QString &path,
                                       const QString &downloads);
    static Error refusal(const QString &path, const QString &reason);

    QString m_path;
    OpenFolder m_folder;
    QStringList m_spared; // paths
};

} // namespace tavelo
