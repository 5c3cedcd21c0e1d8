// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.h"

#include <chrono>

namespace tavelo {

/// The workspace by the desktop's own registry of applications. All of its work is done on the
/// thread pool, as the registry reads files.
class GioWorkspace : public Workspace
{
public:
    /// Our own entry in the registry, which is passed over.
    static constexpr const char *desktopId = "tavelo.desktop";

    /// How long a file manager may take before its folder is opened instead.
    explicit GioWorkspace(std::chrono::milliseconds patience = std::chrono::seconds(5))
        : m_patience(patience)
    {}

    QCoro::Task<std::optional<QString>> applicationFor(QString address) override;
    QCoro::Task<Outcome> open(QString address) override;
    QCoro::Task<Outcome> openWebPage(QUrl url) override;
    QCoro::Task<Outcome> showInFileManager(QString path) override;
    QCoro::Task<bool> isLineMetered() override;

private:
    std::chrono::milliseconds m_patience;
};

} // namespace tavelo
