// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/CurlError.h"

#include <QCoreApplication>

#include <cerrno>

namespace tavelo::CurlError {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Fetch", text);
}

QString connectText(int systemError)
{
    switch (systemError) {
    case ECONNREFUSED:
        return tr("Connection refused");
    case ENETUNREACH:
    case EHOSTUNREACH:
        return tr("The network is unreachable.");
    default:
        return tr("The server could not be reached.");
    }
}

QString textOf(CURLcode code, int systemError)
{
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return tr("The server's name could not be found.");
    case CURLE_COULDNT_RESOLVE_PROXY:
        return tr("The proxy's name could not be found.");
    case CURLE_COULDNT_CONNECT:
        return connectText(systemError);
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CONNECT_ERROR:
        return tr("The connection to the server could not be secured.");
    case CURLE_PROXY:
        return tr("The proxy did not let the request through.");
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
        return tr("The connection ended before the file did.");
    default:
        return tr("The server's answer cannot be understood.");
    }
}

} // namespace

Error of(CURLcode code, int systemError)
{
    if (code == CURLE_OPERATION_TIMEDOUT)
        return silent();
    return {ErrorKind::Transport, textOf(code, systemError)};
}

Error cancelled()
{
    return {ErrorKind::Cancelled, tr("The request was cancelled.")};
}

Error silent()
{
    return {ErrorKind::TimedOut, tr("The server stopped answering.")};
}

Error unsafeRedirect()
{
    return {ErrorKind::Transport, tr("The server redirects to an address that is not safe.")};
}

Error endlessRedirect()
{
    return {ErrorKind::Transport, tr("The server redirects without end.")};
}

} // namespace tavelo::CurlError
