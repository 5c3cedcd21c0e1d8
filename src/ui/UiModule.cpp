// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/UiModule.h"

#include "ui/IconProvider.h"
#include "ui/PosterProvider.h"

#include <QFont>
#include <QGuiApplication>
#include <QImageReader>
#include <QQmlEngine>
#include <QQuickWindow>

void Q_GUI_EXPORT qt_set_sequence_auto_mnemonic(bool on); // documented, but in no header
void qml_register_types_Tavelo(); // generated; naming it keeps the linker from leaving it out

namespace tavelo {

namespace {

constexpr int pictureMegabytes = 256;

void useFont()
{
    QFont font = QGuiApplication::font();
    font.setFamilies({QStringLiteral("Inter"), font.family()});
    QGuiApplication::setFont(font);
}

} // namespace

void UiModule::prepare(QQmlEngine &engine)
{
    static const bool once = [] {
        qml_register_types_Tavelo();
        useFont();
        qt_set_sequence_auto_mnemonic(false); // the "&" of a stranger's title is no key
        QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
        QImageReader::setAllocationLimit(pictureMegabytes);
        return true;
    }();
    Q_UNUSED(once)
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("icon"), new IconProvider);
    engine.addImageProvider(QStringLiteral("poster"), new PosterProvider(engine));
}

QUrl UiModule::mainWindow()
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Tavelo/MainWindow.qml"));
}

} // namespace tavelo
