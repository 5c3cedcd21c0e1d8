// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/desktop/GioWorkspace.h"

#include "platform/ThreadPool.h"
#include "platform/desktop/MeteredLine.h"
#include "platform/http/WebAddress.h"

#include <QCoroFuture>
#include <QFile>

#include <filesystem>

#include <gio/gio.h>

namespace tavelo {

namespace {

using Outcome = Workspace::Outcome;

/// What goes out, and the type for which applications are registered.
struct Outgoing
{
    QByteArray uri;
    QByteArray type;
};

/// Empty when the path is not absolute.
QByteArray fileUri(const QString &path)
{
    g_autofree char *uri = g_filename_to_uri(QFile::encodeName(path), nullptr, nullptr);
    return uri;
}

std::optional<Outgoing> torrentFile(const QString &address)
{
    const QByteArray uri =
        address.startsWith(QLatin1Char('/')) ? fileUri(address) : address.toUtf8();
    // Applications do not agree on where a file's name ends when there is more after it.
    if (!uri.startsWith("file:///") || uri.contains('?') || uri.contains('#'))
        return {};
    g_autofree char *path = g_filename_from_uri(uri, nullptr, nullptr);
    if (!QString::fromUtf8(path).endsWith(QLatin1String(".torrent"), Qt::CaseInsensitive))
        return {};
    return Outgoing{uri, "application/x-bittorrent"};
}

std::optional<Outgoing> magnetOrTorrentFile(const QString &address)
{
    if (address.contains(QChar::Null))
        return {};
    if (address.startsWith(QLatin1String("magnet:")))
        return Outgoing{address.toUtf8(), "x-scheme-handler/magnet"};
    return torrentFile(address);
}

std::optional<Outgoing> webPage(const QUrl &url)
{
    if (!isWebAddress(url))
        return {};
    return Outgoing{url.toEncoded(), "x-scheme-handler/" + url.scheme().toLatin1()};
}

bool isThisProgram(const char *word)
{
    g_autofree char *found = g_find_program_in_path(word);
    std::error_code unreadable;
    return found && std::filesystem::equivalent(found, "/proc/self/exe", unreadable);
}

/// Also under a name that the user gave us, or started by way of another program.
bool isOurs(GAppInfo *application)
{
    if (g_strcmp0(g_app_info_get_id(application), GioWorkspace::desktopId) == 0)
        return true;
    const char *line = g_app_info_get_commandline(application);
    g_auto(GStrv) words = nullptr;
    if (!line || !g_shell_parse_argv(line, nullptr, &words, nullptr))
        return false;
    return std::any_of(words, words + g_strv_length(words), isThisProgram);
}

/// The user's choice for the type, else the first registered one; null when there is none.
GAppInfo *applicationOf(const QByteArray &type)
{
    g_autoptr(GAppInfo) chosen = g_app_info_get_default_for_type(type, FALSE);
    if (chosen && !isOurs(chosen))
        return g_steal_pointer(&chosen);
    g_autolist(GAppInfo) registered = g_app_info_get_recommended_for_type(type);
    for (GList *place = registered; place; place = place->next) {
        auto *application = static_cast<GAppInfo *>(place->data);
        if (!isOurs(application))
            return static_cast<GAppInfo *>(g_object_ref(application));
    }
    return nullptr;
}

std::optional<QString> applicationName(const QString &address)
{
    const auto outgoing = magnetOrTorrentFile(address);
    if (!outgoing)
        return {};
    g_autoptr(GAppInfo) application = applicationOf(outgoing->type);
    if (!application)
        return {};
    return QString::fromUtf8(g_app_info_get_display_name(application));
}

Outcome handOver(std::optional<Outgoing> outgoing)
{
    if (!outgoing)
        return Error{ErrorKind::BadUrl, QStringLiteral("Invalid URL")};
    g_autoptr(GAppInfo) application = applicationOf(outgoing->type);
    if (!application)
        return Error{ErrorKind::Service, QStringLiteral("No application is registered for this")};
    GList uris{outgoing->uri.data(), nullptr, nullptr};
    g_autoptr(GError) failure = nullptr;
    if (g_app_info_launch_uris(application, &uris, nullptr, &failure))
        return {};
    return Error{ErrorKind::Service, QString::fromUtf8(failure->message)};
}

/// On a connection of its own: the shared one ends the process when the bus goes away.
GDBusConnection *sessionBus()
{
    g_autofree char *address =
        g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (!address)
        return nullptr;
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    return g_dbus_connection_new_for_address_sync(address, flags, nullptr, nullptr, nullptr);
}

bool selectInFileManager(const QByteArray &uri, std::chrono::milliseconds patience)
{
    g_autoptr(GDBusConnection) bus = sessionBus();
    if (!bus)
        return false;
    const char *const items[] = {uri.constData(), nullptr};
    const char *startupId = "";
    g_autoptr(GVariant) answer = g_dbus_connection_call_sync(
        bus, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
        "org.freedesktop.FileManager1", "ShowItems", g_variant_new("(^ass)", items, startupId),
        nullptr, G_DBUS_CALL_FLAGS_NONE, static_cast<int>(patience.count()), nullptr, nullptr);
    return answer != nullptr;
}

Outcome show(const QString &path, std::chrono::milliseconds patience)
{
    const QByteArray uri = fileUri(path);
    if (uri.isEmpty())
        return handOver({});
    if (selectInFileManager(uri, patience))
        return {};
    return handOver(Outgoing{uri.left(uri.lastIndexOf('/') + 1), "inode/directory"});
}

} // namespace

QCoro::Task<std::optional<QString>> GioWorkspace::applicationFor(QString address)
{
    const auto name = runOnPool([address] { return applicationName(address); });
    co_return co_await name;
}

QCoro::Task<Outcome> GioWorkspace::open(QString address)
{
    const auto outcome = runOnPool([address] { return handOver(magnetOrTorrentFile(address)); });
    co_return co_await outcome;
}

QCoro::Task<Outcome> GioWorkspace::openWebPage(QUrl url)
{
    const auto outcome = runOnPool([url] { return handOver(webPage(url)); });
    co_return co_await outcome;
}

QCoro::Task<Outcome> GioWorkspace::showInFileManager(QString path)
{
    const auto outcome = runOnPool([path, patience = m_patience] { return show(path, patience); });
    co_return co_await outcome;
}

QCoro::Task<bool> GioWorkspace::isLineMetered()
{
    const auto metered =
        runOnPool([] { return tavelo::isLineMetered(std::chrono::milliseconds(250)); });
    co_return co_await metered;
}

} // namespace tavelo
