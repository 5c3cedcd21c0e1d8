// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace tavelo {

class AppState;

/// What the desktop, a browser or a shell asks the program to open.
namespace Intake {

/// The arguments of a program as addresses: magnet links and URLs as they are, everything else as
/// the URL of a file, found from `folder` when its path is relative. A file that exists is a file,
/// whatever its name looks like.
QStringList addresses(const QStringList &arguments, const QString &folder);

/// Shows the torrent of a magnet link or of a .torrent file; any other address changes nothing.
/// Only the scheme "magnet" in small letters is one.
void open(AppState &state, const QString &address);

} // namespace Intake

} // namespace tavelo
