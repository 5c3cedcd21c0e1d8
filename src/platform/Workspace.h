// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Error.h"

#include <QCoroTask>
#include <QString>
#include <QUrl>

#include <optional>

namespace tavelo {

/// What the program has to do with the user's desktop: addresses and files that it hands to other
/// applications, never to itself, and what the system tells. Nothing blocks. What is under way ends
/// on its own, also when the workspace is gone.
class Workspace
{
public:
    /// Nothing when it was done. ErrorKind::BadUrl for what never goes out, ErrorKind::Service when
    /// there is no application for it or it cannot be started.
    using Outcome = std::optional<Error>;

    virtual ~Workspace() = default;

    /// The name of the application that open() would start. Only magnet links ("magnet:" in just
    /// these letters) and local .torrent files (absolute path or file URL, any letter case) have
    /// one.
    virtual QCoro::Task<std::optional<QString>> applicationFor(QString address) = 0;
    /// Starts that application with the address, letter for letter; a file as its entry asks.
    virtual QCoro::Task<Outcome> open(QString address) = 0;

    /// An http or https address with a host, in the user's browser.
    virtual QCoro::Task<Outcome> openWebPage(QUrl url) = 0;

    /// Shows the file (absolute path) selected in its folder, or else just the folder.
    virtual QCoro::Task<Outcome> showInFileManager(QString path) = 0;

    /// Whether the line to the network is known to be paid for by what goes over it. Tells within a
    /// quarter of a second.
    virtual QCoro::Task<bool> isLineMetered() = 0;
};

} // namespace tavelo
