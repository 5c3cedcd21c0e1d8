// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ArchiveDetails.h"
#include "platform/Workspace.h"
#include "platform/media/film/Films.h"
#include "playback/PlaybackCoordinator.h"

#include <QCoroTask>
#include <QObject>
#include <QTimer>

#include <optional>

namespace tavelo {

/// Has the film prepared that the viewer seems to be about to play, from where it would be played:
/// the first of the item whose files are shown, else, within bounds, the one whose card the pointer
/// or the keyboard rests on. Nothing is fetched over a metered line. Main thread only.
class Foresight : public QObject
{
    Q_OBJECT

public:
    /// All of them must outlive this.
    Foresight(const PlaybackCoordinator &playback, Workspace &workspace, Films &films,
              QObject *parent = nullptr);

    void showItem(const ArchiveDetails &details);
    void leaveItem();

    /// The pointer or the keyboard is on the card of that film. Counts when it stays there.
    void reachCard(const HistoryEntry &entry);
    void leaveCard(const HistoryEntry &entry);

    // A film is about to be played: what is prepared of it comes in all the same.
    void handOver(const ArchiveFile &file); // of the item that is shown
    void handOver(const QUrl &url);

private:
    void restOnCard();
    void prepare(FilmPreparation preparation);
    QCoro::Task<> prepareFlow(FilmPreparation preparation);
    void stop();

    const PlaybackCoordinator &m_playback;
    Workspace &m_workspace;
    Films &m_films;
    std::optional<ArchiveDetails> m_item; // whose files are shown
    std::optional<HistoryEntry> m_card;
    QTimer m_rest;   // on that card
    int m_turn = 0;  // of prepareFlow(); an earlier one's film is not wanted any more
    QUrl m_prepared; // empty: none
};

} // namespace tavelo
