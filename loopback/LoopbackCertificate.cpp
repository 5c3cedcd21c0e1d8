// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/LoopbackCertificate.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>

namespace tavelo {

namespace {

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

LoopbackCertificate LoopbackCertificate::make()
{
    const QTemporaryDir folder;
    const QString pem = folder.filePath(QStringLiteral("certificate.pem"));
    const QString key = folder.filePath(QStringLiteral("key.pem"));
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-nodes"),
                   QStringLiteral("-newkey"), QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
                   QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-days"),
                   QStringLiteral("2"), QStringLiteral("-subj"), QStringLiteral("/CN=loopback"),
                   QStringLiteral("-addext"),
                   QStringLiteral("subjectAltName=DNS:localhost,IP:127.0.0.1,IP:127.0.0.2,"
                                  "IP:127.0.0.3,IP:127.0.0.4"),
                   QStringLiteral("-out"), pem, QStringLiteral("-keyout"), key});
    if (!openssl.waitForFinished() || openssl.exitCode() != 0)
        qFatal("No certificate: %s", openssl.readAllStandardError().constData());
    return {contentsOf(pem), contentsOf(key)};
}

QSslConfiguration LoopbackCertificate::configuration() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(pem));
    configuration.setPrivateKey(QSslKey(key, QSsl::Ec));
    return configuration;
}

} // namespace tavelo
