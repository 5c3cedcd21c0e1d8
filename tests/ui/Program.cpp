// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"

#include "platform/files/StandardFolders.h"
#include "platform/http/ServiceHosts.h"
#include "platform/media/MediaEngine.h"
#include "platform/media/film/FilmMemory.h"
#include "platform/media/film/Films.h"
#include "testlib/Table.h"
#include "ui/UiModule.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

namespace tavelo {

namespace {

constexpr int filmCount = 24;

QJsonObject film(int number)
{
    const QString id = QStringLiteral("film%1").arg(number);
    return {{"identifier", id},
            {"title", QStringLiteral("Film %1").arg(number)},
            {"year", "1940"},
            {"subject", QJsonArray{"noir", QStringLiteral("subject %1").arg(number % 12)}}};
}

QByteArray searchAnswer()
{
    QJsonArray films;
    for (int i = 0; i < filmCount; ++i)
        films.append(film(i));
    const QJsonObject response{{"numFound", filmCount}, {"start", 0}, {"docs", films}};
    return QJsonDocument(QJsonObject{{"response", response}}).toJson();
}

QByteArray clip()
{
    QFile file(TAVELO_CLIPS "/counted.mp4");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void collect(QQuickItem *item, QList<QQuickItem *> &items)
{
    if (!item->isVisible())
        return;
    items.append(item);
    for (QQuickItem *child : item->childItems())
        collect(child, items);
}

} // namespace

HttpService &Program::server()
{
    static auto *server = [] {
        auto *made = new HttpService;
        made->setParent(QCoreApplication::instance());
        ServiceHosts hosts = ServiceHosts::current();
        hosts.archive = hosts.apibay = hosts.yts = made->base();
        ServiceHosts::replace(hosts);
        static const QTemporaryDir folder;
        StandardFolders::relocate(folder.path());
        return made;
    }();
    return *server;
}

Program::Program()
{
    server().serve("/advancedsearch.php", {.body = searchAnswer()});
    for (int i = 0; i < 2; ++i)
        serveFiles("film" + QByteArray::number(i), {"reel.mp4"});
    server().serve("/download/film0/reel.mp4", {.body = clip(), .ranges = true});
    server().forgetRequests();
    // What is held of films would be found by the next program of this process.
    delete &Films::shared();
    FilmMemory::shared().clear().waitForFinished();
    for (const QString &file : {StandardFolders::support() + "/history.json",
                                StandardFolders::support() + "/downloads.json",
                                StandardFolders::configuration() + "/preferences.json"}) {
        QFile::remove(file);
        QFile::remove(KeptFile::previousOf(file));
    }
}

void Program::serveFiles(const QByteArray &id, const QStringList &names, bool restricted)
{
    QJsonArray files;
    for (const QString &name : names)
        files.append(QJsonObject{{"name", name}, {"format", "h.264"}, {"size", "1500000"}});
    QJsonObject metadata = film(id.mid(4).toInt());
    if (restricted)
        metadata["access-restricted-item"] = "true";
    const QJsonObject answer{{"metadata", metadata}, {"files", files}};
    server().serve("/metadata/" + id, {.body = QJsonDocument(answer).toJson()});
}

void Program::mouseAndKeys()
{
    const auto row = columns<bool>("byKeys");
    row("by the mouse", false);
    row("by keys", true);
}

HistoryEntry Program::watched(int number, double position, double duration)
{
    HistoryEntry entry;
    entry.key = QStringLiteral("reel%1|reel.mp4").arg(number);
    entry.itemID = QStringLiteral("reel%1").arg(number);
    entry.title = QStringLiteral("Reel %1").arg(number);
    entry.source = server().base() + "/download/film0/reel.mp4";
    entry.position = position;
    entry.duration = duration;
    entry.lastPlayed = QDateTime({2025, 3, 1}, {12, 0});
    return entry;
}

bool Program::show()
{
    auto workspace = std::make_unique<FakeWorkspace>(m_handed);
    m_workspace = workspace.get();
    m_state = std::make_unique<AppState>([] { return MediaEngine::create({.headless = false}); },
                                         std::move(workspace));
    m_engine = std::make_unique<QQmlApplicationEngine>();
    UiModule::prepare(*m_engine);
    m_engine->setInitialProperties({{"app", QVariant::fromValue(m_state.get())}});
    m_engine->load(UiModule::mainWindow());
    if (m_engine->rootObjects().isEmpty())
        return false;
    m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().first());
    m_window->requestActivate();
    QTest::mouseMove(m_window, {1, m_window->height() - 1});
    return QTest::qWaitForWindowActive(m_window);
}

QList<QQuickItem *> Program::visibleItems() const
{
    QList<QQuickItem *> items;
    collect(m_window->contentItem(), items);
    return items;
}

bool Program::startFilm()
{
    return show() && click("Film 0") && click("Play") &&
           QTest::qWaitFor([this] { return player().duration() > 0; }, 10'000);
}

QQuickItem *Program::text(const QString &wording) const
{
    for (QQuickItem *item : visibleItems()) {
        if (item->inherits("QQuickText") && item->property("text") == wording)
            return item;
    }
    return nullptr;
}

QQuickItem *Program::control(const QString &wording) const
{
    for (QQuickItem *item : visibleItems()) {
        if (item->inherits("QQuickAbstractButton") && item->property("text") == wording)
            return item;
    }
    return nullptr;
}

int Program::countControls(const QString &wording) const
{
    int count = 0;
    for (const QQuickItem *item : visibleItems())
        count += item->inherits("QQuickAbstractButton") && item->property("text") == wording;
    return count;
}

QQuickItem *Program::item(const char *type) const
{
    for (QQuickItem *item : visibleItems()) {
        if (QByteArray(item->metaObject()->className()).startsWith(QByteArray(type) + '_') ||
            item->inherits(type))
            return item;
    }
    return nullptr;
}

bool Program::click(const QString &wording)
{
    if (!QTest::qWaitFor([&] { return control(wording) != nullptr; }, 10'000))
        return false;
    m_window->grabWindow(); // what has just come gets its place when it is drawn
    clickAt(middleOf(control(wording)));
    return true;
}

void Program::clickAt(QPoint point)
{
    QTest::mouseClick(m_window, Qt::LeftButton, {}, point);
}

void Program::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_window, key, modifiers);
}

void Program::keys(const QList<Qt::Key> &keys)
{
    for (const Qt::Key each : keys)
        key(each);
}

void Program::type(const QString &text)
{
    for (const QChar letter : text)
        QTest::keyClick(m_window, letter.toLatin1());
}

QString Program::focusText() const
{
    const QQuickItem *item = m_window->activeFocusItem();
    return item ? item->property("text").toString() : QString();
}

bool Program::tabTo(const QString &text)
{
    for (int stop = 0; stop < 40 && focusText() != text; ++stop)
        key(Qt::Key_Tab);
    return focusText() == text;
}

void Program::wheel(QPoint point, Qt::KeyboardModifiers modifiers)
{
    QWheelEvent event(point, m_window->mapToGlobal(point), {}, {0, -120}, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    event.setTimestamp(m_wheelTime += 100); // a view takes notches of one instant for one
    QCoreApplication::sendEvent(m_window, &event);
}

QPoint Program::middleOf(const QQuickItem *item)
{
    return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
}

} // namespace tavelo
