// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/EndSignals.h"

#include <cerrno>
#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace tavelo {

namespace {

constexpr int caught[] = {SIGTERM, SIGINT, SIGHUP};
int ends[2] = {-1, -1}; // the handler writes into the first, the event loop reads from the second

// Nothing but what a signal handler may call.
void pass(int)
{
    const int before = errno;
    const char note = 0;
    [[maybe_unused]] const ssize_t written = ::write(ends[0], &note, sizeof note);
    errno = before;
}

void handle(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN)
        return;
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART | int(SA_RESETHAND);
    sigaction(signal, &action, nullptr);
}

} // namespace

EndSignals::EndSignals()
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(ends[1], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        char note = 0;
        if (::read(ends[1], &note, sizeof note) == sizeof note)
            Q_EMIT received();
    });
    for (const int signal : caught)
        handle(signal, pass);
}

EndSignals::~EndSignals()
{
    for (const int signal : caught)
        handle(signal, SIG_DFL);
    m_notifier.reset();
    for (int &end : ends) {
        ::close(end);
        end = -1;
    }
}

} // namespace tavelo
