// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"
#include "WindowTest.h"

#include <QAccessible>
#include <QTest>

using namespace tavelo;

namespace {

constexpr int patience = 10'000; // milliseconds

bool isControl(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
    case QAccessible::CheckBox:
    case QAccessible::ComboBox:
    case QAccessible::Dialog:
    case QAccessible::EditableText:
    case QAccessible::Link:
    case QAccessible::List:
    case QAccessible::ListItem:
    case QAccessible::MenuItem:
    case QAccessible::PageTab:
    case QAccessible::PopupMenu:
    case QAccessible::RadioButton:
    case QAccessible::Row:
    case QAccessible::Slider:
    case QAccessible::SpinBox:
    case QAccessible::Table:
        return true;
    default:
        return false;
    }
}

bool takesInput(const QQuickItem *item)
{
    const bool edited = item->inherits("QQuickTextInput") || item->inherits("QQuickTextEdit");
    return item->inherits("QQuickAbstractButton") || item->inherits("QQuickSlider") ||
           (edited && !item->property("readOnly").toBool());
}

/// Looks over one window, scene by scene; what it has looked at once it passes by.
class Inspection
{
public:
    explicit Inspection(Program &program)
        : m_program(program)
    {}

    const QStringList &complaints() const { return m_complaints; }
    QByteArray report() const { return m_complaints.join('\n').toUtf8(); }
    int controls() const { return m_controls; }
    int stops() const { return m_stops; }

    /// That whoever cannot see the window is told what every control is.
    void names(const QString &scene)
    {
        m_scene = scene;
        below(QAccessible::queryAccessibleInterface(m_program.window()));
        for (const QQuickItem *item : m_program.visibleItems()) {
            if (takesInput(item) && item->isEnabled())
                told(item);
        }
    }

    /// That whoever has only a keyboard sees where it is: the picture of a thing with the focus is
    /// another than without.
    void focus(const QString &scene)
    {
        m_scene = scene;
        QQuickItem *before = nullptr;
        QImage with;
        QSet<QQuickItem *> round;
        for (;;) {
            m_program.key(Qt::Key_Tab);
            QQuickItem *now = m_program.window()->activeFocusItem();
            const QImage picture = m_program.window()->grabWindow();
            if (before && now != before) // a stop that is alone keeps it
                compare(before, with, picture);
            if (!now || round.contains(now))
                return;
            round.insert(now);
            const bool known = m_focused.contains(now);
            m_focused.insert(now);
            before = known ? nullptr : now;
            if (before)
                with = pictureOf(before, picture);
        }
    }

private:
    void complain(const QString &what)
    {
        if (const QString complaint = m_scene + ": " + what; !m_complaints.contains(complaint))
            m_complaints.append(complaint);
    }

    void below(QAccessibleInterface *parent)
    {
        for (int i = 0; parent && i < parent->childCount(); ++i) {
            QAccessibleInterface *child = parent->child(i);
            if (!child || child->state().invisible)
                continue;
            if (isControl(child->role())) {
                ++m_controls;
                if (child->text(QAccessible::Name).trimmed().isEmpty())
                    complain(typeOf(child->object()) + " has no name");
            }
            below(child);
        }
    }

    void told(const QQuickItem *item)
    {
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(
            const_cast<QQuickItem *>(item)); // the interface wants it so
        if (!face || !isControl(face->role()))
            complain(typeOf(item) + " is not known for a control");
        else if (face->text(QAccessible::Name).trimmed().isEmpty())
            complain(typeOf(item) + " is a control without a name");
    }

    void compare(QQuickItem *item, const QImage &with, const QImage &picture)
    {
        constexpr int ringPixels = 40; // less than the shortest ring, more than a text cursor
        const QImage without = pictureOf(item, picture);
        if (!item->isVisible() || without.size() != with.size() || with.isNull())
            return; // it has scrolled away
        ++m_stops;
        int changed = 0;
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x)
                changed += with.pixel(x, y) != without.pixel(x, y);
        }
        if (changed < ringPixels)
            complain(typeOf(item) + " does not show that it has the focus");
    }

    static QImage pictureOf(const QQuickItem *item, const QImage &window)
    {
        const qreal scale = item->window()->effectiveDevicePixelRatio();
        const QRectF scene = item->mapRectToScene(item->boundingRect()).adjusted(-6, -6, 6, 6);
        const QRect pixels(QPoint(qRound(scene.x() * scale), qRound(scene.y() * scale)),
                           (scene.size() * scale).toSize());
        return window.copy(pixels);
    }

    static QString typeOf(const QObject *object)
    {
        if (!object)
            return "something";
        const QString type = QString(object->metaObject()->className()).section('_', 0, 0);
        return type + " \"" + object->property("text").toString() + '"';
    }

    Program &m_program;
    QString m_scene;
    QStringList m_complaints;
    QSet<QQuickItem *> m_focused;
    int m_controls = 0;
    int m_stops = 0;
};

} // namespace

class tst_Accessibility : public QObject
{
    Q_OBJECT

private:
    static bool rests()
    {
        return QTest::qWaitFor([] { return Program::server().openRequests() == 0; }, patience);
    }

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }

    void sections()
    {
        Program program;
        QVERIFY(program.startFilm());
        program.key(Qt::Key_Space);
        QTRY_VERIFY(!program.player().isPlaying());
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(program.item("MiniPlayer"));
        program.player().seek(3);
        program.state().searchFor("film");
        Inspection inspection(program);
        for (const QString &section : program.state().sectionNames()) {
            QVERIFY(program.click(section));
            QTRY_COMPARE(program.state().sectionName(), section);
            QVERIFY(rests());
            inspection.names(section);
            inspection.focus(section);
        }
        QVERIFY2(inspection.complaints().isEmpty(), inspection.report());
        QVERIFY(inspection.controls() > 100);
        QVERIFY(inspection.stops() > 10);
    }

    void sheets()
    {
        Program program;
        QVERIFY(program.show());
        Inspection inspection(program);
        QVERIFY(program.click("Film 1"));
        QTRY_VERIFY(program.control("Play"));
        inspection.names("item");
        QTRY_COMPARE(program.item("QQuickPopupItem")->opacity(), 1.0);
        inspection.focus("item");
        program.key(Qt::Key_Escape);
        program.state().inspectMagnet("magnet:?xt=urn:btih:0123456789abcdef0123456789abcdef01234567"
                                      "&dn=Linked&tr=udp%3A%2F%2Fone.example%3A1337");
        QTRY_VERIFY(program.control("Copy Magnet"));
        inspection.names("inspector");
        QTRY_COMPARE(program.item("QQuickPopupItem")->opacity(), 1.0);
        inspection.focus("inspector");
        program.key(Qt::Key_Escape);
        program.state().setNotice("Something went wrong.");
        QTRY_VERIFY(program.control("OK"));
        inspection.names("notice");
        QTRY_COMPARE(program.item("QQuickPopupItem")->opacity(), 1.0);
        inspection.focus("notice");
        QVERIFY2(inspection.complaints().isEmpty(), inspection.report());
        QVERIFY(inspection.stops() >= 3);
    }

    void player()
    {
        Program program;
        QVERIFY(program.startFilm());
        program.key(Qt::Key_Space);
        QTRY_VERIFY(!program.player().isPlaying());
        Inspection inspection(program);
        inspection.names("player");
        inspection.focus("player");
        QVERIFY(inspection.stops() >= 10);
        for (const char *menu :
             {"Subtitles", "Audio track", "Playback speed", "Aspect ratio", "Menu"}) {
            if (QByteArray(menu) == "Menu")
                program.key(Qt::Key_F10);
            else
                QVERIFY(program.click(menu));
            QTRY_VERIFY(program.item("QQuickMenuItem"));
            inspection.names(menu);
            program.key(Qt::Key_Escape);
            QTRY_VERIFY(!program.item("QQuickMenuItem"));
        }
        QVERIFY2(inspection.complaints().isEmpty(), inspection.report());
    }
};

TAVELO_WINDOW_TEST(tst_Accessibility)
#include "tst_accessibility.moc"
