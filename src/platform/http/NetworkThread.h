// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QThread>

namespace tavelo {

/// The thread on which all requests run, so that neither their bytes nor the response cache's files
/// hold up the main thread. One of it; ends with the application object.
class NetworkThread : public QThread
{
    Q_OBJECT

public:
    /// Created and started on first use, from the main thread.
    static NetworkThread &shared();

    ~NetworkThread() override;

private:
    using QThread::QThread;
};

} // namespace tavelo
