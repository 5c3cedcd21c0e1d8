// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/OpenFolder.h"

namespace tavelo::CacheTag {

/// The name that the Cache Directory Tagging Standard gives the file. Backup programs know it.
inline constexpr char fileName[] = "CACHEDIR.TAG";

/// Whether the folder carries our tag: that of another program, or a link to one of ours, is none.
bool isIn(const OpenFolder &folder);

/// Puts our tag into the folder, unless it is there. False when it cannot be written, or another
/// one is in its place; `errno` says why. Waits up to a second for one that is being written.
bool put(const OpenFolder &folder);

} // namespace tavelo::CacheTag
