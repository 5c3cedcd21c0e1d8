// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/OpenFolder.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <utility>

namespace tavelo {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

struct CloseStream
{
    void operator()(DIR *stream) const { closedir(stream); }
};

bool isDots(const char *name)
{
    return qstrcmp(name, ".") == 0 || qstrcmp(name, "..") == 0;
}

} // namespace

std::optional<OpenFolder::Id> OpenFolder::idAt(const QString &path)
{
    struct stat facts;
    if (stat(QFile::encodeName(path).constData(), &facts) != 0 || !S_ISDIR(facts.st_mode))
        return std::nullopt;
    return Id{facts.st_dev, facts.st_ino};
}

OpenFolder::OpenFolder(const QString &path)
    : OpenFolder(open(QFile::encodeName(path).constData(), folderFlags))
{}

OpenFolder::OpenFolder(int descriptor)
    : m_descriptor(descriptor)
{
    struct stat facts;
    if (m_descriptor >= 0 && fstat(m_descriptor, &facts) == 0)
        m_id = {facts.st_dev, facts.st_ino};
}

OpenFolder::OpenFolder(OpenFolder &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_id(other.m_id)
{}

OpenFolder &OpenFolder::operator=(OpenFolder &&other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    std::swap(m_id, other.m_id);
    return *this;
}

OpenFolder::~OpenFolder()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

OpenFolder OpenFolder::below(const char *name) const
{
    return OpenFolder(openat(m_descriptor, name, folderFlags | O_NOFOLLOW));
}

void OpenFolder::eachName(const std::function<void(const char *)> &visit) const
{
    // A descriptor of its own: its place in the folder is moved, and closed with the stream.
    const int own = openat(m_descriptor, ".", folderFlags);
    const std::unique_ptr<DIR, CloseStream> stream(own < 0 ? nullptr : fdopendir(own));
    if (!stream && own >= 0)
        close(own);
    while (const dirent *entry = stream ? readdir(stream.get()) : nullptr) {
        if (!isDots(entry->d_name))
            visit(entry->d_name);
    }
}

} // namespace tavelo
