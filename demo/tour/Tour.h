// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoApplication.h"
#include "UiDriver.h"

#include <QDir>

namespace tavelo {

/// Walks through every screen by mouse and keyboard, at one window size, and leaves a picture of
/// every state worth seeing.
class Tour
{
public:
    Tour(DemoApplication *demo, const QDir &folder, const QSize &size);

    /// False when something did not come on screen; what, is said on the standard error stream.
    bool walk();

private:
    bool home();
    bool discover();
    bool search();
    bool itemSheets();
    bool player();
    bool playerMenus();
    bool brokenFilm();
    bool silentServer();
    bool homeLater();
    // In TourTorrents.cpp.
    bool torrentSearch();
    bool torrentResults();
    bool torrentInspector();
    void addIndexers();
    void type(const QString &name, const QString &text);
    // In TourManage.cpp.
    bool manage();
    bool emptyShelves();
    bool downloads();
    bool library();
    bool settings();
    bool providerEditor();
    bool downloadsThatEnded();
    bool downloadsUnderway();
    bool downloadsMoved();
    bool downloadHeldUp();
    /// Waits until it is known how long it takes, or that it does not go on.
    bool startDownload(const QString &title, const QString &id, const Checksum &checksum = {});

    bool openItem(const QString &title);
    bool waitPlaying(double seconds) const;
    void shoot(const char *name);
    bool expect(bool came, const char *what) const;

    DemoApplication *m_demo;
    QDir m_folder;
    UiDriver m_ui;
    int m_shots = 0;
};

} // namespace tavelo
