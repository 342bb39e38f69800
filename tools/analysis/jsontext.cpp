#include "jsontext.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>

namespace analysis {

using Node = JsonText::Node;

static bool startsCharacter(char c)
{
    return (c & 0xc0) != 0x80;
}

namespace {

// Qt's parser keeps no places, and its reason for a fault is a guess. This parser is a stream of events with an offset.
using Stream = rapidjson::MemoryStream;

/// Builds the nodes from the parser's events. A value starts after the previous event and the separators between the
/// two.
class Builder : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Builder>
{
public:
    Builder(const Stream &stream, const QByteArray &bytes, int start, Node *root)
        : m_stream(stream), m_bytes(bytes), m_start(start), m_last(start), m_open{root}
    {
    }

    bool Default()
    {
        add(next());
        return true;
    }
    bool String(const char *, rapidjson::SizeType, bool) { return Default(); }

    bool Key(const char *text, rapidjson::SizeType length, bool)
    {
        m_nameSpan = next();
        m_name = QString::fromUtf8(text, static_cast<int>(length));
        return true;
    }

    // Between the last event and the next there are only blanks, commas and colons.
    int begin() const
    {
        const auto isBetween = [](char c) {
            return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == ',' || c == ':';
        };
        const auto found = std::find_if_not(m_bytes.cbegin() + m_last, m_bytes.cend(), isBetween);
        return static_cast<int>(found - m_bytes.cbegin());
    }

    bool StartObject() { return open(); }
    bool StartArray() { return open(); }
    bool EndObject(rapidjson::SizeType) { return close(); }
    bool EndArray(rapidjson::SizeType) { return close(); }

private:
    int offset() const { return m_start + static_cast<int>(m_stream.Tell()); }

    // A scalar: the parser is past it.
    Span next()
    {
        const Span span{begin(), offset()};
        m_last = span.end;
        return span;
    }

    // A bracket: the parser may still be at it.
    Span bracket()
    {
        const Span span{begin(), begin() + 1};
        m_last = span.end;
        return span;
    }

    Node &add(Span span)
    {
        if (m_open.size() == 1) { // the document itself
            m_open.first()->span = span;
            return *m_open.first();
        }
        m_open.last()->children.append({span, m_nameSpan, m_name, {}});
        m_name.clear();
        m_nameSpan = {};
        return m_open.last()->children.last();
    }

    bool open()
    {
        // The pointer stays valid: its parent gets no other child while it is open.
        m_open.append(&add(bracket()));
        return m_open.size() <= JsonText::maximumDepth + 1;
    }

    bool close()
    {
        m_open.takeLast()->span.end = bracket().end;
        return true;
    }

    const Stream &m_stream;
    const QByteArray &m_bytes;
    const int m_start; // of the stream within the bytes
    int m_last;
    QString m_name;
    Span m_nameSpan;
    QVector<Node *> m_open; // the first is the place for the document
};

}

// The parser's messages, except where it has none or misleading ones.
static QString reasonOf(rapidjson::ParseErrorCode code, const QByteArray &found)
{
    const bool isInString = code == rapidjson::kParseErrorStringEscapeInvalid
            || code == rapidjson::kParseErrorStringInvalidEncoding
            || code == rapidjson::kParseErrorStringMissQuotationMark;
    if (code == rapidjson::kParseErrorTermination)
        return QStringLiteral("Too many levels.");
    if (isInString && !found.isEmpty() && static_cast<unsigned char>(found.at(0)) < 0x20)
        return QStringLiteral("A string contains a raw control character.");
    if ((code == rapidjson::kParseErrorValueInvalid && found == "]")
        || (code == rapidjson::kParseErrorObjectMissName && found == "}"))
        return QStringLiteral("Unexpected comma.");
    return QString::fromLatin1(rapidjson::GetParseError_En(code));
}

JsonText::JsonText(const QString &path, const QByteArray &bytes) : m_path(path), m_bytes(bytes)
{
    m_lines.append(0);
    for (int end = bytes.indexOf('\n'); end >= 0; end = bytes.indexOf('\n', end + 1))
        m_lines.append(end + 1);

    m_characters.append(0);
    for (int begin = 0; begin + 1024 <= bytes.size(); begin += 1024) {
        const auto block = bytes.cbegin() + begin;
        m_characters.append(m_characters.last()
                            + static_cast<int>(std::count_if(block, block + 1024, startsCharacter)));
    }

    const int start = bytes.startsWith("\xef\xbb\xbf") ? 3 : 0; // Qt's parser also skips it
    Stream stream(bytes.constData() + start, static_cast<std::size_t>(bytes.size() - start));
    Builder builder(stream, m_bytes, start, &m_root);
    rapidjson::Reader reader;
    const auto result =
            reader.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(stream, builder);
    if (!result) {
        // The start of such a string says more than the end of the file.
        const bool isString = result.Code() == rapidjson::kParseErrorStringMissQuotationMark;
        const int end = std::min(start + static_cast<int>(result.Offset()), bytes.size());
        m_fault = Fault{isString ? builder.begin() : end, reasonOf(result.Code(), bytes.mid(end, 1))};
    }
}

int JsonText::charactersBefore(int offset) const
{
    const auto block = m_bytes.cbegin() + (offset - offset % 1024);
    return m_characters.at(offset / 1024)
            + static_cast<int>(std::count_if(block, m_bytes.cbegin() + offset, startsCharacter));
}

Position JsonText::positionOf(int offset) const
{
    const int end = std::min(offset, m_bytes.size());
    const auto behind = std::upper_bound(m_lines.cbegin(), m_lines.cend(), end);
    return {static_cast<int>(behind - m_lines.cbegin()), 1 + charactersBefore(end) - charactersBefore(*(behind - 1))};
}

Span JsonText::lineOf(int offset) const
{
    const auto behind = std::upper_bound(m_lines.cbegin(), m_lines.cend(), offset);
    const int start = *(behind - 1);
    const int end = behind == m_lines.cend() ? m_bytes.size() : *behind - 1;
    return {start, end > start && m_bytes.at(end - 1) == '\r' ? end - 1 : end};
}

Place JsonText::place() const
{
    return Place(this, &m_root, m_root.span);
}

Place JsonText::placeAt(int offset) const
{
    return Place(this, nullptr, {offset, std::min(offset + 1, m_bytes.size())});
}

Place Place::to(const JsonText::Node *node) const
{
    return node ? Place(m_text, node, node->span) : Place(m_text, nullptr, m_span);
}

Place Place::operator[](const QString &name) const
{
    if (!m_node)
        return *this;
    const auto found = std::find_if(m_node->children.crbegin(), m_node->children.crend(),
                                    [&name](const Node &node) { return node.name == name; });
    return to(found == m_node->children.crend() ? nullptr : &*found);
}

Place Place::operator[](int index) const
{
    return to(m_node && index < m_node->children.size() ? &m_node->children.at(index) : nullptr);
}

Place Place::name() const
{
    return m_node && m_node->nameSpan.end > 0 ? Place(m_text, nullptr, m_node->nameSpan) : *this;
}

}
