// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <cstdint>
#include <memory>

struct mpv_handle;

namespace tavelo {

/// Owns one libmpv core. Shared by the player and, while it draws, by the renderer: libmpv wants
/// its render context gone before the core goes. Every call here is asynchronous.
class MpvCore
{
public:
    /// Null when libmpv cannot start. Wants LC_NUMERIC to be "C".
    static std::shared_ptr<MpvCore> create(bool headless);
    ~MpvCore();

    MpvCore(const MpvCore &) = delete;
    MpvCore &operator=(const MpvCore &) = delete;

    mpv_handle *handle() const { return m_handle; }

    /// The reply carries `reply`.
    void command(std::uint64_t reply, const QList<QByteArray> &words);
    void set(const char *property, const QByteArray &value);
    void set(const char *property, double value);
    void set(const char *property, bool value);

private:
    explicit MpvCore(mpv_handle *handle)
        : m_handle(handle)
    {}

    mpv_handle *m_handle;
};

} // namespace tavelo
