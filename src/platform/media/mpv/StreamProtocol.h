// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <memory>

struct mpv_handle;

namespace tavelo {

class FilmStream;

/// Lets libmpv read our films, under addresses that exist nowhere else.
namespace StreamProtocol {

void install(mpv_handle *handle);

/// The address under which libmpv may open `stream`, once.
QByteArray addressOf(std::shared_ptr<FilmStream> stream);

} // namespace StreamProtocol

} // namespace tavelo
