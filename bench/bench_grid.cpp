// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ResidentMemory.h"
#include "app/AppState.h"
#include "loopback/HttpServiceThread.h"
#include "platform/Workspace.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/ServiceHosts.h"
#include "ui/UiModule.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <mutex>

// Scrolls a grid of 10,000 films whose posters come over HTTP on 127.0.0.1 with 80 ms before every
// answer, and beside it, in the same run, a grid of bare boxes and texts: the least that the
// toolkit and the renderer take on this machine.
//   xvfb-run -a -s "-screen 0 1600x1000x24" build/release/bin/bench_grid [software]
// A graphics driver without a graphics card keeps its buffers in our memory; with "software" none
// is used, and the memory is the program's own.

using namespace tavelo;

namespace {

constexpr int films = 10'000;
constexpr double frameLimit = 16.7; // milliseconds
constexpr int memoryLimit = 60;     // MB
constexpr int seconds = 10;         // of each walk
constexpr int latency = 80;         // milliseconds
constexpr int settling = 3000;      // milliseconds before memory is read

struct Speed
{
    const char *name;
    double pixels; // a second
};
constexpr Speed speeds[] = {{"as read", 1'000}, {"flicked", 5'000}, {"dragged", 40'000}};

const char *const oursSource = R"(
    import QtQuick
    import Tavelo
    MediaGrid {
        title: "Films"
    }
)";

const char *const bareSource = R"(
    import QtQuick
    GridView {
        id: grid
        required property var app
        required property var items
        readonly property Item view: grid
        cellHeight: 292
        cellWidth: 178
        model: items.length
        reuseItems: true
        delegate: Item {
            required property int index
            Rectangle { color: "#1c1c24"; height: 210; radius: 8; width: 150 }
            Text { color: "white"; text: "Film " + index; y: 216 }
            Text { color: "gray"; text: "1940"; y: 240 }
        }
    }
)";

QByteArray poster()
{
    QImage picture(300, 420, QImage::Format_RGB32);
    QPainter painter(&picture);
    QLinearGradient gradient(0, 0, 300, 420);
    gradient.setColorAt(0, Qt::darkMagenta);
    gradient.setColorAt(1, Qt::darkCyan);
    painter.fillRect(picture.rect(), gradient);
    for (int i = 0; i < 400; ++i)
        painter.fillRect(i * 37 % 300, i * 91 % 420, 9, 9, QColor::fromHsv(i % 360, 160, 200));
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "JPEG", 85);
    return bytes;
}

QList<MediaItem> catalogue()
{
    QList<MediaItem> items;
    for (int i = 0; i < films; ++i) {
        MediaItem item;
        item.id = QStringLiteral("film%1").arg(i);
        item.title = QStringLiteral("The Long Way Round to Number %1").arg(i);
        item.year = QString::number(1900 + i % 70);
        items.append(item);
    }
    return items;
}

/// A window with one view in it, and the times of its frames.
class Stage
{
public:
    Stage(QQmlEngine &engine, const char *source, const QVariantMap &properties)
    {
        QQmlComponent component(&engine);
        component.setData(source, QUrl(QStringLiteral("qrc:/bench.qml")));
        m_root.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties)));
        if (!m_root)
            qFatal("%s", qPrintable(component.errorString()));
        m_root->setParentItem(m_window.contentItem());
        m_root->setSize({1250, 900});
        m_window.setColor(QColor(18, 18, 23));
        QObject::connect(
            &m_window, &QQuickWindow::beforeRendering, &m_window,
            [this] {
                const std::scoped_lock lock(m_mutex);
                if (QOpenGLContext *context = QOpenGLContext::currentContext()) {
                    const auto *name = context->functions()->glGetString(GL_RENDERER);
                    m_renderer = reinterpret_cast<const char *>(name);
                }
            },
            Qt::DirectConnection);
        QObject::connect(
            &m_window, &QQuickWindow::frameSwapped, &m_window,
            [this] {
                const std::scoped_lock lock(m_mutex);
                m_frames.append(static_cast<double>(m_frame.nsecsElapsed()) / 1e6);
                m_frame.start();
            },
            Qt::DirectConnection);
        m_window.resize(1250, 900);
        m_window.show();
        (void)QTest::qWaitForWindowExposed(&m_window);
        QTest::qWait(settling);
    }

    QQuickItem &root() { return *m_root; }
    QByteArray renderer()
    {
        const std::scoped_lock lock(m_mutex);
        return m_renderer;
    }

    /// Downwards, and up again at the end, for as long as a walk lasts. Milliseconds a frame.
    QList<double> walk(double speed)
    {
        auto *view = m_root->property("view").value<QQuickItem *>();
        const double end = view->property("contentHeight").toDouble() - view->height();
        QElapsedTimer timer;
        timer.start();
        const auto driving =
            QObject::connect(&m_window, &QQuickWindow::afterAnimating, &m_window, [&] {
                const double way = speed * static_cast<double>(timer.elapsed()) / 1000;
                const auto turns = static_cast<int>(way / end);
                const double rest = way - turns * end;
                view->setProperty("contentY", turns % 2 == 0 ? rest : end - rest);
                m_window.update();
            });
        {
            const std::scoped_lock lock(m_mutex);
            m_frames.clear();
            m_frame.start();
        }
        m_window.update();
        QTest::qWait(seconds * 1000);
        QObject::disconnect(driving);
        const std::scoped_lock lock(m_mutex);
        return m_frames;
    }

private:
    std::mutex m_mutex; // guards what follows: the frames end on the renderer's thread
    QByteArray m_renderer = "the toolkit's own, without OpenGL";
    QList<double> m_frames;
    QElapsedTimer m_frame;
    QQuickWindow m_window; // ends that thread: goes before what it uses
    std::unique_ptr<QQuickItem> m_root;
};

void print(const char *what, const char *speed, QList<double> frames)
{
    std::ranges::sort(frames);
    const auto late = std::ranges::count_if(frames, [](double ms) { return ms > frameLimit; });
    std::printf("%-8s %-8s %5d frames, median %5.1f ms, 99 %% %6.1f ms, worst %6.1f ms, "
                "%4d over %.1f ms\n",
                what, speed, static_cast<int>(frames.size()), frames[frames.size() / 2],
                frames[frames.size() * 99 / 100], frames.last(), static_cast<int>(late),
                frameLimit);
}

} // namespace

int main(int argc, char **argv)
{
    const bool software = argc == 2 && qstrcmp(argv[1], "software") == 0;
    QQuickWindow::setGraphicsApi(software ? QSGRendererInterface::Software
                                          : QSGRendererInterface::OpenGL);
    const QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    StandardFolders::relocate(folder.path());
    const QByteArray picture = poster();
    HttpServiceThread server;
    HttpService &posters = server.add();
    server.run([&] {
        posters.serveRest([&](const HttpRequest &) -> HttpAnswer {
            return {.body = picture,
                    .headers = {{"Content-Type", "image/jpeg"}},
                    .delay = std::chrono::milliseconds(latency)};
        });
    });
    ServiceHosts::replace({.archive = posters.base()});

    AppState state({}, nullptr);
    QQmlEngine engine;
    UiModule::prepare(engine);
    const QVariantMap empty{{QStringLiteral("app"), QVariant::fromValue(&state)},
                            {QStringLiteral("items"), QVariant::fromValue(QList<MediaItem>())}};
    const QVariant items = QVariant::fromValue(catalogue());
    {
        Stage bare(engine, bareSource, empty);
        bare.root().setProperty("items", items);
        std::printf("Renderer: %s\n", bare.renderer().constData());
        for (const Speed &speed : speeds)
            print("bare", speed.name, bare.walk(speed.pixels));
    }
    Stage ours(engine, oursSource, empty);
    const double before = proportionalSetSize();
    QElapsedTimer taking;
    taking.start();
    ours.root().setProperty("items", items);
    std::printf("taking %d films: %lld ms of the main thread\n", films, taking.elapsed());
    for (const Speed &speed : speeds)
        print("posters", speed.name, ours.walk(speed.pixels));
    QTest::qWait(settling);
    const double added = proportionalSetSize() - before;
    std::printf("memory added %.0f MB, limit %d MB, ratio %.2f\n", added, memoryLimit,
                added / memoryLimit);
    return 0;
}
