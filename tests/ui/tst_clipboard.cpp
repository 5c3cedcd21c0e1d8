// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/UiModule.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

using namespace tavelo;

class TestClipboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsTheTextOnly()
    {
        auto *before = new QMimeData;
        before->setHtml("<b>before</b>");
        QGuiApplication::clipboard()->setMimeData(before);

        const QString text = "magnet:?xt=urn%3Abtih%3A00&dn=a%20b%2D<b>\n";
        QQmlEngine engine;
        UiModule::prepare(engine);
        QQmlComponent component(&engine);
        component.setData(
            "import QtQml\nimport Tavelo\n"
            "QtObject { property string text; onTextChanged: Clipboard.setText(text) }",
            {});
        const std::unique_ptr<QObject> object(
            component.createWithInitialProperties({{"text", text}}));
        QVERIFY2(object, qPrintable(component.errorString()));

        QCOMPARE(QGuiApplication::clipboard()->text(), text);
        QVERIFY(!QGuiApplication::clipboard()->mimeData()->hasHtml());
    }
};

QTEST_MAIN(TestClipboard)
#include "tst_clipboard.moc"
