// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppState.h"
#include "loopback/HttpService.h"
#include "testlib/FakeWorkspace.h"

#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>

namespace tavelo {

/// The whole window on a catalogue of the test's own: films "film0", "film1", … with the titles
/// "Film 0", … The catalogue's answers may be changed before show(). Without a history and
/// downloads, with the preferences of a first start.
class Program
{
public:
    Program();

    static HttpService &server();
    /// An item's answer: files by name, in the service's form.
    static void serveFiles(const QByteArray &id, const QStringList &names, bool restricted = false);

    /// "Reel 1", "Reel 2", … as the history keeps them; times in seconds.
    static HistoryEntry watched(int number, double position, double duration);

    /// The table of a test that is done by the mouse and once more by keys: `byKeys`.
    static void mouseAndKeys();

    /// Shows the window and waits until it has the keyboard.
    bool show();
    bool show(const QString &section) { return show() && click(section); }
    /// Shows the window and plays the first film; true when it runs and its controls are there.
    bool startFilm();

    /// What was handed to other applications, as FakeWorkspace writes it.
    const QStringList &handed() const { return m_handed; }
    /// After show().
    FakeWorkspace &workspace() { return *m_workspace; }
    AppState &state() { return *m_state; }
    VideoPlayerManager &player() { return *m_state->playback()->player(); }
    QQuickWindow *window() const { return m_window; }

    /// The first visible text, or control that can be pressed, of that wording; null when none is.
    QQuickItem *text(const QString &wording) const;
    QQuickItem *control(const QString &wording) const;
    int countControls(const QString &wording) const;
    /// The first visible item of a QML or C++ type.
    QQuickItem *item(const char *type) const;
    QList<QQuickItem *> visibleItems() const;

    /// Waits for the control and clicks its middle.
    bool click(const QString &wording);
    void clickAt(QPoint point);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void keys(const QList<Qt::Key> &keys);
    void type(const QString &text);
    /// The text of what has the keyboard.
    QString focusText() const;
    /// Presses Tab until the control of that text has the keyboard; false when none gets it.
    bool tabTo(const QString &text);
    /// One notch towards the user.
    void wheel(QPoint point, Qt::KeyboardModifiers modifiers);
    static QPoint middleOf(const QQuickItem *item);

private:
    QStringList m_handed;
    FakeWorkspace *m_workspace = nullptr; // the state's
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow *m_window = nullptr;
    quint64 m_wheelTime = 0; // milliseconds
};

} // namespace tavelo
