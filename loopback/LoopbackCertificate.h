// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSslConfiguration>

namespace tavelo {

/// A certificate for "localhost" and 127.0.0.1 to 127.0.0.4 that is made on the spot, and that
/// clients must be given as one to trust.
struct LoopbackCertificate
{
    QByteArray pem; // what clients are given
    QByteArray key; // PEM

    /// A new one, valid from now for two days. Needs the openssl program.
    static LoopbackCertificate make();

    QSslConfiguration configuration() const; // of the service
};

} // namespace tavelo
