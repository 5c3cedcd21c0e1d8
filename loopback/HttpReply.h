// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "loopback/HttpAnswer.h"
#include "loopback/HttpRequest.h"

namespace tavelo {

/// What one request is sent of an answer: all of it, one range, or nothing but a status.
class HttpReply
{
public:
    HttpReply(HttpAnswer answer, const HttpRequest &request);

    const HttpAnswer &answer() const { return m_answer; }
    QByteArray head() const;
    /// Whether the connection ends once everything is sent.
    bool closes() const { return m_closes || isCut(); }

    /// Bytes of the body that are sent, up to the fault that there may be.
    qint64 length() const { return m_length; }
    /// `count` of them from `offset` on, in their framing.
    QByteArray bytes(qint64 offset, qint64 count) const;
    /// What ends the body once they are sent.
    QByteArray tail() const;
    bool isCut() const { return m_fault == Fault::Cut; }
    bool fallsSilent() const { return m_fault == Fault::Silence; }

private:
    enum class Fault { None, Cut, Silence };

    void takeRange(const HttpRequest &request);
    void takeFault();
    bool hasBody() const;

    HttpAnswer m_answer;
    bool m_headOnly;
    bool m_closes;
    qint64 m_first = 0;  // place in the whole body
    qint64 m_size = 0;   // from there, without faults
    qint64 m_length = 0; // from there, up to a fault
    Fault m_fault = Fault::None;
};

} // namespace tavelo
