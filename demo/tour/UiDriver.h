// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QPoint>
#include <QQuickWindow>
#include <QString>

class QAccessibleInterface;

namespace tavelo {

/// Uses a window as a person would: finds things by their accessible name, moves the mouse, clicks,
/// types, looks.
class UiDriver
{
public:
    explicit UiDriver(QQuickWindow *window);

    /// The first visible thing of that name; null when there is none.
    QAccessibleInterface *find(const QString &name) const;
    bool has(const QString &name) const { return find(name) != nullptr; }
    /// Waits, at most 10 s, until it is there (or gone).
    bool waitFor(const QString &name) const;
    bool waitGone(const QString &name) const;

    /// Waits for a control of that name and clicks its middle. False when it did not come.
    bool click(const QString &name) const;
    bool hover(const QString &name) const;
    /// The same for anything that is there already.
    bool hoverOver(const QString &name) const;
    void move(const QPoint &to) const;
    /// Waits for a control of that name and presses the mouse at so many pixels right of its left
    /// edge, in its middle; moves it down by `by` and holds it there until release().
    bool drag(const QString &name, int inside, int by);
    void release() const;
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    /// Presses Tab until what bears that name has the keyboard; false when nothing does.
    bool tabTo(const QString &name) const;
    void type(const QString &text) const;
    /// Resizes the window and waits until it has been drawn at that size.
    void resize(const QSize &size) const;
    QImage picture() const { return m_window->grabWindow(); }

private:
    bool moveToControl(const QString &name, QPoint &place) const;

    QQuickWindow *m_window;
    QPoint m_held; // where the mouse is pressed
};

} // namespace tavelo
