// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/Fetch.h"
#include "platform/media/FilmSource.h"
#include "platform/media/film/SliceCache.h"

#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace tavelo {

class Film;

/// What is fetched of a film before anybody has asked to play it.
struct FilmPreparation
{
    static constexpr qint64 whole = 8LL * 1024 * 1024; // index and first picture, as far as it goes
    static constexpr qint64 little = 512LL * 1024;     // a connection, and what little is missing

    QUrl url;           // http or https
    double startAt = 0; // seconds: where it would be played from
    qint64 mostBytes = whole;
    QList<QUrl> alternatives = {}; // other nodes that have the same file
};

/// The films of the program. Main thread, but for what the films' readers do.
class Films : public QObject, public FilmSource
{
    Q_OBJECT

public:
    /// Those of the process. Created on first use; end with the application object.
    static Films &shared();

    /// `fetch` must outlive this.
    explicit Films(Fetch &fetch, QObject *parent = nullptr);
    ~Films() override;

    std::shared_ptr<FilmStream> open(const QUrl &url, double startAt) override;

    /// One film at a time: another one's preparation ends. What has come of it stays.
    void prepare(const FilmPreparation &preparation);
    void stopPreparing();

private:
    /// A film, and what waits until it is known whether something was kept of it.
    struct Entry
    {
        std::shared_ptr<Film> film;
        bool isRecalled = false;
        QList<std::function<void()>> waiting = {};
    };

    Entry &entryOf(const QUrl &url);
    void forgetOldest();
    void recall(const QUrl &url);
    void whenRecalled(Entry &entry, std::function<void()> call);
    void keep(Film &film, double seconds);

    Fetch &m_fetch;
    const std::shared_ptr<SliceCache> m_cache = std::make_shared<SliceCache>();
    std::vector<Entry> m_films; // asked for last comes first
    std::weak_ptr<Film> m_prepared;
    int m_numbers = 0;
};

} // namespace tavelo
