// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tavelo::StandardFolders {

/// Where the program keeps its own data ("TaveloApp" in the user's application data). Not created.
QString support();

/// Where saved films go by default ("TaveloApp" in the user's film folder). Not created.
QString movies();

/// Where the preferences lie ("TaveloApp" in the user's configuration). Not created.
QString configuration();

/// Puts all of them below `root` instead. Once, before anything else runs: for the demo and the
/// tests.
void relocate(const QString &root);

} // namespace tavelo::StandardFolders
