// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ArchiveQuery.h"

#include "catalogue/NetError.h"
#include "catalogue/Text.h"
#include "platform/http/ServiceHosts.h"

namespace tavelo::ArchiveQuery {

namespace {

constexpr const char *fields[] = {"identifier", "title",     "year",       "description",
                                  "creator",    "downloads", "licenseurl", "subject"};

/// Combining marks (Devanagari vowels, decomposed accents), and the two invisible joiners that some
/// scripts write inside a word: all belong to the letter before them.
bool extendsLetter(char32_t c)
{
    return QChar::isMark(c) || c == U'\u200C' || c == U'\u200D';
}

QByteArray encoded(const QString &text)
{
    return QUrl::toPercentEncoding(text, "!$'()*,:@/?");
}

Result<QUrl> validURL(const QString &text)
{
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid())
        return NetError::badURL();
    return url;
}

} // namespace

QStringList sanitize(QStringView text)
{
    QString words;
    bool inWord = false;
    for (const char32_t c : text.toUcs4()) {
        inWord = QChar::isLetterOrNumber(c) || (inWord && extendsLetter(c));
        words += inWord ? QString::fromUcs4(&c, 1) : QStringLiteral(" ");
    }
    return words.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString buildQuery(const std::optional<QString> &text, const std::optional<QString> &extra)
{
    QStringList clauses{QStringLiteral("mediatype:(movies)"),
                        QStringLiteral("-access-restricted-item:true")};
    const QString joint = QStringLiteral(" AND ");
    if (const QString words = sanitize(text.value_or(QString())).join(joint); !words.isEmpty())
        clauses.prepend(
            QStringLiteral("(title:(%1) OR description:(%1) OR subject:(%1))").arg(words));
    if (extra && !extra->isEmpty())
        clauses.append(*extra);
    return clauses.join(joint);
}

Result<QUrl> searchURL(const QString &query, const QString &sort, int rows, int page)
{
    QByteArray items = "q=" + encoded(query);
    for (const char *field : fields)
        items += QByteArray("&fl%5B%5D=") + field;
    items += "&sort%5B%5D=" + encoded(sort) + "&rows=" + QByteArray::number(rows) +
             "&page=" + QByteArray::number(page) + "&output=json";
    return validURL(ServiceHosts::current().archive + QLatin1String("/advancedsearch.php?") +
                    QLatin1String(items));
}

Result<QUrl> metadataURL(const QString &id)
{
    return validURL(ServiceHosts::current().archive + QLatin1String("/metadata/") +
                    Text::pathEncoded(id));
}

} // namespace tavelo::ArchiveQuery
