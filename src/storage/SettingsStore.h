// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ProviderConfig.h"
#include "platform/Preferences.h"

#include <QObject>

namespace tavelo {

/// The user's settings. Read once, at creation; each assignment is stored and announced, also that
/// of an equal value. What is missing or of another type in the store has its default,
/// which is not written; of a damaged list of providers the whole entries stay. Main thread only.
class SettingsStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString cachePath READ cachePath WRITE setCachePath NOTIFY cachePathChanged)
    Q_PROPERTY(
        QString downloadsPath READ downloadsPath WRITE setDownloadsPath NOTIFY downloadsPathChanged)
    Q_PROPERTY(
        qint64 cacheLimitMB READ cacheLimitMB WRITE setCacheLimitMB NOTIFY cacheLimitMBChanged)
    Q_PROPERTY(
        qint64 autoCleanDays READ autoCleanDays WRITE setAutoCleanDays NOTIFY autoCleanDaysChanged)
    Q_PROPERTY(bool gridView READ gridView WRITE setGridView NOTIFY gridViewChanged)
    Q_PROPERTY(QList<tavelo::ProviderConfig> providers READ providers NOTIFY providersChanged)

public:
    explicit SettingsStore(QObject *parent = nullptr);

    /// The folder of the program's own data. The first use creates it; a failure shows where
    /// something is written into it.
    static QString appSupport();
    /// Where the cache is unless the user has chosen another folder. Not created.
    static QString defaultCachePath();

    // Paths of folders; neither is created here.
    QString cachePath() const { return m_cachePath; }
    QString downloadsPath() const { return m_downloadsPath; }
    /// In units of 1,048,576 bytes.
    qint64 cacheLimitMB() const { return m_cacheLimitMB; }
    /// After how many days a file of the cache is cleaned away; 0: never.
    qint64 autoCleanDays() const { return m_autoCleanDays; }
    /// Whether catalogue results show as a grid, not as a list.
    bool gridView() const { return m_gridView; }
    /// The search providers, in the order in which they are asked.
    QList<ProviderConfig> providers() const { return m_providers; }

    void setCachePath(const QString &path);
    void setDownloadsPath(const QString &path);
    void setCacheLimitMB(qint64 limit);
    void setAutoCleanDays(qint64 days);
    void setGridView(bool grid);
    void setProviders(const QList<ProviderConfig> &providers);

    /// Where they lie, to hear of its troubles and to wait for it.
    KeptFile &file() { return m_preferences.file(); }

Q_SIGNALS:
    void cachePathChanged();
    void downloadsPathChanged();
    void cacheLimitMBChanged();
    void autoCleanDaysChanged();
    void gridViewChanged();
    void providersChanged();

private:
    Preferences m_preferences;
    QString m_cachePath;
    QString m_downloadsPath;
    qint64 m_cacheLimitMB;
    qint64 m_autoCleanDays;
    bool m_gridView;
    QList<ProviderConfig> m_providers;
};

} // namespace tavelo
