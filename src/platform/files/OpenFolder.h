// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <sys/types.h>

#include <functional>
#include <optional>

namespace tavelo {

/// A folder that is held open: what is done by its descriptor is done in it, whatever becomes of
/// its path meanwhile.
class OpenFolder
{
public:
    /// Which folder it is, however its path is spelt.
    struct Id
    {
        dev_t device = 0;
        ino_t number = 0;

        bool operator==(const Id &) const = default;
    };

    /// None when there is no folder at `path`. Links are followed.
    static std::optional<Id> idAt(const QString &path);

    /// Not open.
    OpenFolder() = default;
    /// Links are followed. When it cannot be opened, it is not open, and `errno` says why.
    explicit OpenFolder(const QString &path);
    OpenFolder(OpenFolder &&other) noexcept;
    OpenFolder &operator=(OpenFolder &&other) noexcept;
    ~OpenFolder();

    /// The folder of that name in this one. A link is not followed: it is no folder (`errno`).
    OpenFolder below(const char *name) const;

    explicit operator bool() const { return m_descriptor >= 0; }
    int descriptor() const { return m_descriptor; }
    const Id &id() const { return m_id; }

    /// Calls `visit` for each entry but "." and "..", in the file system's order.
    void eachName(const std::function<void(const char *)> &visit) const;

private:
    explicit OpenFolder(int descriptor);

    int m_descriptor = -1;
    Id m_id;
};

} // namespace tavelo
