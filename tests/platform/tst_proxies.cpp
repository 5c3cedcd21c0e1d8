// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "platform/http/CurlFetch.h"
#include "platform/http/HttpClient.h"
#include "testlib/Awaited.h"
#include "testlib/Table.h"

#include <QTest>

#include <future>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

/// An HTTP and SOCKS 5 proxy that takes everybody to one service, and notes where they wanted to
/// go.
class Proxy : public QTcpServer
{
public:
    explicit Proxy(quint16 service)
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this, service] {
            QTcpSocket *client = nextPendingConnection();
            auto *server = new QTcpSocket(client);
            server->connectToHost(QHostAddress::LocalHost, service);
            connect(server, &QIODevice::readyRead, client,
                    [=] { client->write(server->readAll()); });
            connect(client, &QIODevice::readyRead, this, [=, this] {
                if (!client->property("through").toBool())
                    meet(*client);
                if (client->property("through").toBool())
                    server->write(client->readAll());
            });
        });
    }

    QByteArray address(const char *scheme) const
    {
        return QByteArray(scheme) + "://127.0.0.1:" + QByteArray::number(serverPort());
    }

    QStringList hosts;

private:
    void meet(QTcpSocket &client)
    {
        const QByteArray said = client.peek(1024);
        if (said.startsWith("\x05") && said.size() == 2 + said[1]) {
            client.read(said.size());
            client.write("\x05\x00", 2);
        } else if (said.startsWith(QByteArray("\x05\x01\x00\x03", 4))) {
            client.read(said.size());
            note(client, said.mid(5, said[4]));
            client.write("\x05\x00\x00\x01\x00\x00\x00\x00\x00\x00", 10);
        } else if (said.startsWith("GET http://")) {
            const QUrl url(said.split(' ')[1]);
            client.read(said.indexOf(url.path().toLatin1()));
            note(client, url.host());
            client.ungetChar(' ');
            for (const char c : {'T', 'E', 'G'})
                client.ungetChar(c);
        }
    }

    void note(QTcpSocket &client, const QString &host)
    {
        hosts.append(host);
        client.setProperty("through", true);
    }
};

class Receiver : public FetchReceiver
{
public:
    std::future<QByteArray> body() { return m_promise.get_future(); }

private:
    bool headArrived(const FetchHead &) override { return true; }
    Take bytesArrived(const char *bytes, qint64 count) override
    {
        m_body.append(bytes, count);
        return Take::More;
    }
    void ended(const FetchEnd &) override { m_promise.set_value(m_body); }

    QByteArray m_body;
    std::promise<QByteArray> m_promise;
};

} // namespace

/// What the environment names is used by both clients; the proxy looks up the host, for nobody else
/// could.
class tst_Proxies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *name : {"HTTP_PROXY", "no_proxy", "NO_PROXY"})
            qunsetenv(name);
    }

    void used_data()
    {
        const auto row = columns<QByteArray, QString, QStringList>("scheme", "host", "seen");
        row("HTTP", "http", "http.example", {"http.example", "http.example"});
        row("SOCKS", "socks5", "socks.example", {"socks.example", "socks.example"});
        row("none for this machine", "http", "127.0.0.1", {});
    }

    void used()
    {
        QFETCH(QByteArray, scheme);
        QFETCH(QString, host);
        HttpService service;
        service.serve("/film.mp4", {.body = "film"});
        QUrl url = service.url("/film.mp4");
        Proxy proxy(quint16(url.port()));
        qputenv("http_proxy", proxy.address(scheme.constData()));
        url.setHost(host);

        HttpClient client;
        const auto small = awaited(client.get(url, 5s));
        QVERIFY2(small, small ? "" : qPrintable(small.error().text));
        QCOMPARE(small->body, "film");

        CurlFetch fetch;
        const auto receiver = std::make_shared<Receiver>();
        auto body = receiver->body();
        fetch.start({.url = url}, receiver);
        QTRY_COMPARE(body.wait_for(0s), std::future_status::ready);
        QCOMPARE(body.get(), "film");
        QTEST(proxy.hosts, "seen");
    }
};

QTEST_GUILESS_MAIN(tst_Proxies)
#include "tst_proxies.moc"
