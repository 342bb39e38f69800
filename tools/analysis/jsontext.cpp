#include "jsontext.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>

namespace analysis {

using Node = JsonText::Node;

namespace {

// Qt's reader keeps no places, and its reason for a fault is a guess. This one is a stream of events with an offset.
using Stream = rapidjson::MemoryStream;

/// Builds the nodes from the reader's events. A value starts behind the event before it and what may stand between two.
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

    // Behind the last event there are only blanks, commas and colons before the next.
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

    // A scalar, which the reader has taken.
    Span next()
    {
        const Span span{begin(), offset()};
        m_last = span.end;
        return span;
    }

    // A bracket, which the reader may still be at.
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
        // Stays where it is: its parent gets no other child while it is open.
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

JsonText::JsonText(const QString &path, const QByteArray &bytes) : m_path(path), m_bytes(bytes)
{
    m_lines.append(0);
    for (int end = bytes.indexOf('\n'); end >= 0; end = bytes.indexOf('\n', end + 1))
        m_lines.append(end + 1);

    const int start = bytes.startsWith("\xef\xbb\xbf") ? 3 : 0; // Qt's reader skips it, too
    Stream stream(bytes.constData() + start, static_cast<std::size_t>(bytes.size() - start));
    Builder builder(stream, m_bytes, start, &m_root);
    rapidjson::Reader reader;
    const auto result =
            reader.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(stream, builder);
    if (!result) {
        const bool isTooDeep = result.Code() == rapidjson::kParseErrorTermination;
        // Where such a string starts says more than the end of the file.
        const bool isString = result.Code() == rapidjson::kParseErrorStringMissQuotationMark;
        m_fault = Fault{std::min(isString ? builder.begin() : start + static_cast<int>(result.Offset()), bytes.size()),
                        isTooDeep ? QStringLiteral("Too many levels.")
                                  : QString::fromLatin1(rapidjson::GetParseError_En(result.Code()))};
    }
}

Position JsonText::positionOf(int offset) const
{
    const auto behind = std::upper_bound(m_lines.cbegin(), m_lines.cend(), offset);
    const int start = *(behind - 1);
    const auto startsCharacter = [](char c) { return (c & 0xc0) != 0x80; };
    const int end = std::min(offset, m_bytes.size());
    return {static_cast<int>(behind - m_lines.cbegin()),
            1 + static_cast<int>(std::count_if(m_bytes.cbegin() + start, m_bytes.cbegin() + end, startsCharacter))};
}

Span JsonText::lineOf(int offset) const
{
    const auto behind = std::upper_bound(m_lines.cbegin(), m_lines.cend(), offset);
    const int end = behind == m_lines.cend() ? m_bytes.size() : *behind - 1;
    return {*(behind - 1), end};
}

Place JsonText::place() const
{
    return Place(this, &m_root, m_root.span);
}

Place JsonText::placeAt(int offset) const
{
    return Place(this, &m_root, {offset, std::min(offset + 1, m_bytes.size())});
}

Place Place::operator[](const QString &name) const
{
    const auto found = std::find_if(m_node->children.crbegin(), m_node->children.crend(),
                                    [&name](const Node &node) { return node.name == name; });
    return found == m_node->children.crend() ? *this : to(*found);
}

Place Place::operator[](int index) const
{
    return index < m_node->children.size() ? to(m_node->children.at(index)) : *this;
}

Place Place::name() const
{
    return m_node->nameSpan.end > 0 ? Place(m_text, m_node, m_node->nameSpan) : *this;
}

}
