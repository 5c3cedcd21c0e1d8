// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tavelo {

/// Where copied text goes, for any application to paste. Main thread only.
class Pasteboard
{
public:
    virtual ~Pasteboard() = default;

    /// Replaces whatever is there by plain text.
    virtual void setText(const QString &text) = 0;
};

} // namespace tavelo
