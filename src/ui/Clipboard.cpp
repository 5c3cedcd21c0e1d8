// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tavelo {

void Clipboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

} // namespace tavelo
