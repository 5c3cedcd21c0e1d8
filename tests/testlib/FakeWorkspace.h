// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.h"

#include <QStringList>

namespace tavelo {

/// Writes down what is handed over ("open …", "web …", "show …"). There is no application for
/// addresses that end in "none"; those that end in "broken" cannot be started.
class FakeWorkspace : public Workspace
{
public:
    /// `handed` outlives it.
    explicit FakeWorkspace(QStringList &handed)
        : m_handed(handed)
    {}

    QCoro::Task<std::optional<QString>> applicationFor(QString address) override
    {
        if (address.endsWith("none"))
            co_return std::nullopt;
        co_return "Other";
    }
    QCoro::Task<Outcome> open(QString address) override { return hand("open ", address); }
    QCoro::Task<Outcome> openWebPage(QUrl url) override { return hand("web ", url.toString()); }
    QCoro::Task<Outcome> showInFileManager(QString path) override { return hand("show ", path); }
    QCoro::Task<bool> isLineMetered() override { co_return metered; }

    bool metered = false; // the line to the network

private:
    QCoro::Task<Outcome> hand(QString deed, QString object)
    {
        if (object.endsWith("broken"))
            co_return Error{ErrorKind::Service, "Cannot be started"};
        m_handed.append(deed + object);
        co_return std::nullopt;
    }

    QStringList &m_handed;
};

} // namespace tavelo
