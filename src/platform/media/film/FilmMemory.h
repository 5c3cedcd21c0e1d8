// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/KeptFilm.h"

#include <QFuture>
#include <QObject>
#include <QThreadPool>

namespace tavelo {

/// What is kept on disk of the films opened last: a file for each in one folder. Main thread only;
/// the files are read and written on another, one after the other.
class FilmMemory : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype maxFilms = 30;

    /// The one of the process. Created on first use; ends with the application object.
    static FilmMemory &shared();

    explicit FilmMemory(QObject *parent = nullptr);
    /// Writes what it was given to the end.
    ~FilmMemory() override;

    /// Where films are kept from now on; those in the former folder are left there. The folder is
    /// created with the first of them, the one above it never. Empty: nowhere, which it begins
    /// with.
    void setFolder(const QString &folder);

    /// What is kept of the film of that address; absent: nothing. A file that is damaged or none of
    /// ours is removed.
    QFuture<std::optional<KeptFilm>> load(const QUrl &url);

    /// Keeps `film` in the place of what is kept of it, and drops the oldest beyond maxFilms. A
    /// failure, or a film of more than KeptFilm::maxBytes, keeps what there is.
    QFuture<void> store(KeptFilm film);

    /// Forgets the film of that address.
    QFuture<void> drop(const QUrl &url);

    /// Forgets all of the folder. Ends when their files are gone.
    QFuture<void> clear();

private:
    QString m_folder;
    QThreadPool m_disk; // one thread
};

} // namespace tavelo
