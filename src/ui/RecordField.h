// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVariant>

namespace tavelo {

/// A property of a gadget, an object or a map, as text. Empty when there is none of that name.
QString recordField(const QVariant &record, const QString &name);

} // namespace tavelo
