// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <variant>

namespace tavelo {

/// A stored preference; which of the four it is belongs to its value.
using PreferenceValue = std::variant<QString, qint64, bool, QByteArray>;

using PreferenceValues = QMap<QString, PreferenceValue>;

/// The preferences file: one JSON object (RFC 8259), written by key. Texts, integers and booleans
/// are JSON's own; bytes are an object whose one member "base64" (RFC 4648, 4) holds them.
namespace PreferencesFormat {

/// Empty for anything that is not such an object; a member of another form is left out.
PreferenceValues decoded(const QByteArray &file);
QByteArray encoded(const PreferenceValues &values);

} // namespace PreferencesFormat

} // namespace tavelo
