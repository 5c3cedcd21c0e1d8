// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "UiDriver.h"

#include <QAccessible>
#include <QTest>

#include <algorithm>

namespace tavelo {

namespace {

constexpr int patience = 10'000; // milliseconds

bool isAnything(QAccessibleInterface *)
{
    return true;
}

/// What reacts to a click, as against the captions that bear the same name.
bool isControl(QAccessibleInterface *thing)
{
    switch (thing->role()) {
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
    case QAccessible::Link:
    case QAccessible::ListItem:
    case QAccessible::MenuItem:
    case QAccessible::RadioButton:
    case QAccessible::Slider:
    case QAccessible::EditableText:
        return true;
    default:
        return false;
    }
}

QAccessibleInterface *findBelow(QAccessibleInterface *parent, const QString &name,
                                bool (*accepts)(QAccessibleInterface *))
{
    for (int i = 0; parent && i < parent->childCount(); ++i) {
        QAccessibleInterface *child = parent->child(i);
        if (!child || child->state().invisible)
            continue;
        if (child->text(QAccessible::Name) == name && accepts(child))
            return child;
        if (QAccessibleInterface *found = findBelow(child, name, accepts))
            return found;
    }
    return nullptr;
}

} // namespace

UiDriver::UiDriver(QQuickWindow *window)
    : m_window(window)
{
    QAccessible::setActive(true);
    // Keys go to the window that is active, also where no window manager makes it so.
    window->requestActivate();
    (void)QTest::qWaitForWindowActive(window);
}

QAccessibleInterface *UiDriver::find(const QString &name) const
{
    return findBelow(QAccessible::queryAccessibleInterface(m_window), name, isAnything);
}

bool UiDriver::waitFor(const QString &name) const
{
    return QTest::qWaitFor([&] { return has(name); }, patience);
}

bool UiDriver::waitGone(const QString &name) const
{
    return QTest::qWaitFor([&] { return !has(name); }, patience);
}

bool UiDriver::moveToControl(const QString &name, QPoint &place) const
{
    QAccessibleInterface *control = nullptr;
    const bool came = QTest::qWaitFor(
        [&] {
            control = findBelow(QAccessible::queryAccessibleInterface(m_window), name, isControl);
            return control != nullptr;
        },
        patience);
    if (!came)
        return false;
    m_window->grabWindow(); // what has just come gets its place when it is drawn
    place = m_window->mapFromGlobal(control->rect().center());
    move(place);
    return true;
}

bool UiDriver::click(const QString &name) const
{
    QPoint place;
    if (!moveToControl(name, place))
        return false;
    QTest::mouseClick(m_window, Qt::LeftButton, {}, place);
    return true;
}

bool UiDriver::hover(const QString &name) const
{
    QPoint place;
    return moveToControl(name, place);
}

bool UiDriver::hoverOver(const QString &name) const
{
    QAccessibleInterface *thing = find(name);
    if (thing)
        move(m_window->mapFromGlobal(thing->rect().center()));
    return thing != nullptr;
}

void UiDriver::move(const QPoint &to) const
{
    QTest::mouseMove(m_window, to);
}

bool UiDriver::drag(const QString &name, int inside, int by)
{
    constexpr int step = 10;
    if (!moveToControl(name, m_held))
        return false;
    m_held.setX(m_window->mapFromGlobal(find(name)->rect().topLeft()).x() + inside);
    QTest::mousePress(m_window, Qt::LeftButton, {}, m_held);
    for (const int end = m_held.y() + by; m_held.y() < end;) {
        m_held.setY(std::min(m_held.y() + step, end));
        move(m_held);
    }
    return true;
}

void UiDriver::release() const
{
    QTest::mouseRelease(m_window, Qt::LeftButton, {}, m_held);
}

void UiDriver::key(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QTest::keyClick(m_window, key, modifiers);
}

bool UiDriver::tabTo(const QString &name) const
{
    constexpr int manyStops = 60;
    for (int stop = 0; stop < manyStops; ++stop) {
        key(Qt::Key_Tab);
        QAccessibleInterface *now = QAccessible::queryAccessibleInterface(m_window->focusObject());
        if (now && now->text(QAccessible::Name) == name)
            return true;
    }
    return false;
}

void UiDriver::type(const QString &text) const
{
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, m_window, Qt::Key_unknown, letter, Qt::NoModifier);
}

void UiDriver::resize(const QSize &size) const
{
    m_window->resize(size);
    (void)QTest::qWaitFor([&] { return m_window->size() == size; }, patience);
    m_window->grabWindow();
}

} // namespace tavelo
