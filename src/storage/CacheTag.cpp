// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "storage/CacheTag.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string_view>
#include <thread>

namespace tavelo::CacheTag {

namespace {

using namespace std::chrono_literals;

// The standard's signature, and the line by which we know our own.
constexpr std::string_view head = "Signature: 8a477f597d28d172789f06886806bc55\n"
                                  "# Tavelo keeps here what may be thrown away.\n";
constexpr std::string_view advice =
    "# It removes old files of this folder by itself: keep none of yours in it.\n"
    "# Backups may leave it out: see https://bford.info/cachedir/\n";

bool isRegular(int file)
{
    struct stat facts;
    return fstat(file, &facts) == 0 && S_ISREG(facts.st_mode);
}

bool write(int file, std::string_view text)
{
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written >= 0 && size_t(written) < text.size())
        errno = ENOSPC;
    return written == ssize_t(text.size());
}

bool appears(const OpenFolder &folder)
{
    for (int turn = 0; turn < 100; ++turn) {
        if (isIn(folder))
            return true;
        struct stat facts;
        const bool begun =
            fstatat(folder.descriptor(), fileName, &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(facts.st_mode) && facts.st_size == 0;
        if (!begun)
            break;
        std::this_thread::sleep_for(10ms);
    }
    const bool there = isIn(folder);
    errno = EEXIST;
    return there;
}

} // namespace

bool isIn(const OpenFolder &folder)
{
    // Not to wait for a pipe of that name.
    const int file = openat(folder.descriptor(), fileName,
                            O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return false;
    char found[head.size()];
    const ssize_t count = isRegular(file) ? read(file, found, sizeof found) : -1;
    close(file);
    return count == ssize_t(head.size()) && std::string_view(found, head.size()) == head;
}

bool put(const OpenFolder &folder)
{
    const int file = openat(folder.descriptor(), fileName,
                            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (file < 0)
        return errno == EEXIST && appears(folder);
    const bool whole = write(file, head) && write(file, advice);
    const int reason = errno;
    close(file);
    if (!whole)
        unlinkat(folder.descriptor(), fileName, 0);
    errno = reason;
    return whole;
}

} // namespace tavelo::CacheTag
