// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/LogOutput.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>

#include <cstdio>
#include <memory>
#include <mutex>

#include <sys/stat.h>

namespace tavelo::LogOutput {

namespace {

const QString option = QStringLiteral("--log");

/// Written by plain calls of the system's library: Qt's may have messages of their own.
class LogFile
{
public:
    LogFile(const QString &folder, qint64 mostBytes)
        : m_path(QFile::encodeName(folder + QLatin1String("/tavelo.log")))
        , m_previous(QFile::encodeName(folder + QLatin1String("/tavelo.previous.log")))
        , m_most(mostBytes / 2)
    {
        open();
    }

    void write(const QByteArray &line)
    {
        const std::scoped_lock lock(m_mutex);
        if (m_file && size() + line.size() > m_most) {
            m_file.reset();
            std::rename(m_path.constData(), m_previous.constData());
        }
        if (!m_file || isRemoved())
            open();
        if (!m_file)
            return;
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), m_file.get());
        std::fflush(m_file.get());
    }

private:
    struct Close
    {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };

    void open() { m_file.reset(std::fopen(m_path.constData(), "ae")); }
    struct stat state() const
    {
        struct stat state = {};
        ::fstat(fileno(m_file.get()), &state);
        return state;
    }
    qint64 size() const { return state().st_size; }
    /// The cache may be cleared at any time.
    bool isRemoved() const { return state().st_nlink == 0; }

    const QByteArray m_path;
    const QByteArray m_previous;
    const qint64 m_most;
    std::mutex m_mutex;
    std::unique_ptr<std::FILE, Close> m_file;
};

LogFile *theFile = nullptr; // for good: messages come until the very end

void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const char *mark = type == QtInfoMsg || type == QtDebugMsg ? " " : " ! ";
    const QByteArray line = QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toLatin1() +
                            ' ' + (context.category ? context.category : "default") + mark +
                            message.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
    theFile->write(line);
}

} // namespace

std::optional<QStringList> takeOption(QStringList &arguments)
{
    std::optional<QStringList> categories;
    arguments.removeIf([&](const QString &argument) {
        if (argument == option)
            categories = QStringList(QStringLiteral("*"));
        else if (argument.startsWith(option + QLatin1Char('=')))
            categories = argument.sliced(option.size() + 1).split(QLatin1Char(','));
        else
            return false;
        return true;
    });
    return categories;
}

void start(const QStringList &categories, const QString &folder, qint64 mostBytes)
{
    QDir().mkpath(folder);
    theFile = new LogFile(folder, mostBytes);
    qInstallMessageHandler(handle);
    QString rules;
    for (const QString &category : categories)
        rules += QStringLiteral("tavelo.%1=true\n").arg(category);
    QLoggingCategory::setFilterRules(rules);
}

} // namespace tavelo::LogOutput
