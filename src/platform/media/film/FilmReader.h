// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/FilmSource.h"

#include <atomic>
#include <chrono>
#include <memory>

namespace tavelo {

class Film;

/// One reading of a film by a demuxer.
class FilmReader final : public FilmStream
{
public:
    using Clock = std::chrono::steady_clock;

    FilmReader(std::shared_ptr<Film> film, double startAt);
    ~FilmReader() override;
    Q_DISABLE_COPY_MOVE(FilmReader)

    qint64 read(char *to, qint64 most) override;
    std::optional<qint64> seek(qint64 offset) override;
    std::optional<qint64> size() override;

    void expect(double seconds) override;
    void shown(double seconds) override { m_shown = seconds; }
    void cancel() override;
    QString error() const override;
    QString trouble() const override;
    QString wish() const override;
    bool isOutdated() const override;
    std::chrono::milliseconds starvedFor() const override;

    // The film's side.
    qint64 place() const { return m_place; } // of the next byte that is read
    bool isOver() const { return m_cancelled; }
    double expected() const { return m_expected; } // seconds: where the viewer goes
    int expectations() const { return m_expectations; }
    /// How long it has waited for the byte at its place; 0: it does not.
    std::chrono::milliseconds waitsFor() const;

private:
    bool hasSomething() const;
    void demandMore();

    const std::shared_ptr<Film> m_film;
    std::atomic<qint64> m_place = 0;
    qint64 m_demanded = 0; // the place that the film was last told of; the reader's thread
    std::atomic_bool m_cancelled = false;
    std::atomic<double> m_expected;
    std::atomic<int> m_expectations = 1;
    std::atomic<double> m_shown = -1;              // seconds; less than 0: nothing yet
    std::atomic<Clock::time_point> m_waitsSince{}; // the epoch: it does not wait
};

} // namespace tavelo
