// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/Application.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/ServiceHosts.h"

#include <QQuickWindow>

#include <cstdio>
#include <vector>

using namespace tavelo;

namespace {

void say(const char *what, const QString &text = {})
{
    std::printf("%s %s\n", what, qPrintable(text));
    std::fflush(stdout);
}

} // namespace

/// intake_host FOLDER [ADDRESS…] : the program with its folders below FOLDER and without a net. It
/// says what it shows, and the time of the film that TAVELO_FILM names.
int main(int argc, char **argv)
{
    StandardFolders::relocate(QString::fromLocal8Bit(argv[1]));
    ServiceHosts::replace({.archive = "http://127.0.0.1:9"});
    std::vector<char *> rest(argv + 1, argv + argc);
    rest[0] = argv[0];
    int count = argc - 1;
    Application application(count, rest.data());
    if (const auto code = application.claim())
        return *code;
    if (!application.show())
        return 1;
    AppState &state = application.state();
    QObject::connect(&state, &AppState::inspectorChanged,
                     [&] { say("inspector", state.inspector()->name); });
    QObject::connect(&state, &AppState::noticeChanged, [&] { say("notice", state.noticeText()); });
    QWindow *window = application.window();
    QObject::connect(window, &QWindow::activeChanged,
                     [window] { say(window->isActive() ? "front" : "back"); });
    if (const QString film = qEnvironmentVariable("TAVELO_FILM"); !film.isEmpty()) {
        QObject::connect(state.playback()->player(), &VideoPlayerManager::currentTimeChanged,
                         [](double seconds) { say("time", QString::number(seconds)); });
        state.playLocal({QUrl::fromLocalFile(film), 0, {}});
    }
    say("shown");
    return application.run();
}
