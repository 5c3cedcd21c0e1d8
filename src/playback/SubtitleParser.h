// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "playback/SubtitleCue.h"

#include <QList>

#include <optional>

/// Reads SubRip and WebVTT by one grammar, which finds timing lines by their arrow. Total: what
/// makes no sense is passed over.
namespace tavelo::SubtitleParser {

/// The cues in the file's order, with markup removed; entities and brace codes stay.
QList<SubtitleCue> parse(QString text);

/// The seconds of "[hours:]minutes:seconds", with a point or a comma in the seconds; absent when it
/// is no such text.
std::optional<double> parseTime(QStringView text);

/// A subtitle file's text: UTF-8, or where it is not, ISO 8859-1.
QString decoded(const QByteArray &file);

} // namespace tavelo::SubtitleParser
