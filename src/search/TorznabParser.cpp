// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/TorznabParser.h"

namespace tavelo {

namespace {

using Key = TorznabItem::Key;

// The elements of an item whose text is kept; they are named like its attributes.
bool isTextElement(Key key)
{
    return key == Key::Title || key == Key::Link || key == Key::Guid || key == Key::Size ||
           key == Key::Comments;
}

// The XML reader compares every attribute of a tag with every other. No honest tag has hundreds; in
// well-formed documents no "<" lies inside a tag, and only those without zero bytes can be looked
// through byte by byte.
bool isHeavy(const QByteArray &body)
{
    constexpr int maxAttributes = 500;
    int equals = 0;
    int quotes = 0;
    for (const char c : body) {
        if (c == '<')
            equals = quotes = 0;
        equals += c == '=';
        quotes += c == '"' || c == '\'';
        if (c == '\0' || (equals > maxAttributes && quotes > 2 * maxAttributes))
            return true;
    }
    return false;
}

// Declared entities and attributes let a small document grow without measure.
bool declaresAnything(QStringView documentType)
{
    return documentType.count(QLatin1String("<!")) > 1;
}

Error failure(ErrorKind kind, const QString &text)
{
    constexpr qsizetype maxCharacters = 200; // it comes from the document, or may quote it
    return {kind, text.left(maxCharacters), 0};
}

std::optional<QString> valueOf(const QXmlStreamAttributes &attributes, QLatin1String name)
{
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.qualifiedName() == name)
            return attribute.value().toString();
    }
    return {};
}

} // namespace

TorznabParser::TorznabParser(const QString &source)
    : m_source(source)
{}

Result<QList<TorrentResult>> TorznabParser::parse(const QByteArray &body)
{
    if (isHeavy(body))
        return failure(ErrorKind::Malformed, QStringLiteral("The answer is no Torznab document."));
    QXmlStreamReader reader(body);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            startElement(reader.qualifiedName(), reader.attributes());
            break;
        case QXmlStreamReader::Characters:
            if (m_item && !reader.isCDATA())
                m_text += reader.text();
            break;
        case QXmlStreamReader::DTD:
            if (declaresAnything(reader.text()))
                reader.raiseError(QStringLiteral("The answer declares entities or attributes."));
            break;
        case QXmlStreamReader::EndElement:
            endElement(reader.qualifiedName());
            break;
        default:
            break;
        }
    }
    if (m_apiError)
        return *m_apiError;
    if (reader.hasError())
        return failure(ErrorKind::Malformed, reader.errorString());
    return m_results;
}

void TorznabParser::startElement(QStringView name, const QXmlStreamAttributes &attributes)
{
    m_text.clear();
    if (name == QLatin1String("item"))
        m_item.emplace();
    if (name == QLatin1String("error"))
        m_apiError = failure(ErrorKind::Service, valueOf(attributes, QLatin1String("description"))
                                                     .value_or(QStringLiteral("Indexer error")));
    if (m_item)
        readItemAttributes(name, attributes);
}

void TorznabParser::readItemAttributes(QStringView name, const QXmlStreamAttributes &attributes)
{
    if (name.endsWith(QLatin1String("attr"))) {
        const auto attributeName = valueOf(attributes, QLatin1String("name"));
        const auto value = valueOf(attributes, QLatin1String("value"));
        const auto key = attributeName ? TorznabItem::keyNamed(*attributeName) : std::nullopt;
        if (key && value)
            m_item->insert(*key, *value);
    }
    if (name == QLatin1String("enclosure")) {
        if (const auto url = valueOf(attributes, QLatin1String("url"))) {
            m_item->insert(Key::Enclosure, *url);
            if (const auto length = valueOf(attributes, QLatin1String("length")))
                m_item->insert(Key::Length, *length);
        }
    }
}

void TorznabParser::endElement(QStringView name)
{
    if (!m_item)
        return;
    const auto key = TorznabItem::keyNamed(name);
    if (key && isTextElement(*key))
        m_item->insert(*key, m_text.trimmed());
    if (name == QLatin1String("item")) {
        if (const auto result = m_item->result(m_source))
            m_results.append(*result);
        m_item.reset();
    }
}

} // namespace tavelo
