// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <limits>

/// Strangers' texts as the screens show them: of bounded length and bounded cost to lay out. For
/// the screen only; what is stored, compared, handed over or copied is the text itself.
namespace tavelo::DisplayText {

struct Bounds
{
    qsizetype characters = 0; // UTF-16 code units
    qsizetype lines = std::numeric_limits<qsizetype>::max();
};

/// The beginning that keeps within the bounds, with an ellipsis as its last character where
/// anything is left out. Cut between what people see as characters. A text that changes its
/// direction more often than any honest one does is cut there, too.
QString shortened(const QString &text, Bounds bounds);

/// With U+200B as a place to break wherever a long stretch offers none.
QString breakable(const QString &text);

/// A title, a file's path, a person: one line of at most 500 characters, without the controls that
/// make a text read in another order than it is stored. Where it has right-to-left letters it is a
/// bidi isolate, so that it can stand in one of our sentences, which all run from left to right.
QString name(const QString &text);

/// Several paragraphs: at most 20,000 characters and 1,000 lines, breakable.
QString body(const QString &text);

/// What a row shows of such a text: at most 300 characters.
QString extract(const QString &text);

/// An error or a notice, which may quote a stranger: at most 1,000 characters and 10 lines,
/// breakable.
QString message(const QString &text);

} // namespace tavelo::DisplayText
