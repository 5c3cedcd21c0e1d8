// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tavelo {

/// A magnet link (BEP 9) with the public trackers. `hash` is neither checked nor re-cased. Only
/// ASCII letters and digits stand unescaped in its values; one without a UTF-8 form is empty.
QString makeMagnet(const QString &hash, const QString &name);

} // namespace tavelo
