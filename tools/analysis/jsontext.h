#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

// A JSON file with the place of everything in it. The library's reader checks the values.

namespace analysis {

/// A part of a file, in bytes; the end is the first byte after it.
struct Span
{
    int begin = 0;
    int end = 0;
};

/// The place of a byte for people: from one, columns in characters.
struct Position
{
    int line = 1;
    int column = 1;
};

class Place;

class JsonText
{
public:
    /// The deepest level that Qt's parser accepts.
    static const int maximumDepth = 1024;

    /// One value; a member also has its name.
    struct Node
    {
        Span span;
        Span nameSpan; // with its quotes
        QString name;
        QVector<Node> children; // in the order of the file, names may repeat
    };
    struct Fault
    {
        int offset;
        QString reason;
    };

    /// If the text is not strict JSON, only the part before the fault is known.
    JsonText(const QString &path, const QByteArray &bytes);

    const QString &path() const { return m_path; }
    const QByteArray &bytes() const { return m_bytes; }
    const Node &root() const { return m_root; }
    const std::optional<Fault> &fault() const { return m_fault; }

    Position positionOf(int offset) const;
    /// The line that holds a byte, without its line end.
    Span lineOf(int offset) const;

    /// The place of the whole document.
    Place place() const;
    Place placeAt(int offset) const;

private:
    int charactersBefore(int offset) const;

    QString m_path;
    QByteArray m_bytes;
    Node m_root;
    std::optional<Fault> m_fault;
    QVector<int> m_lines;      // the start of each
    QVector<int> m_characters; // before each kilobyte: a file may be one line
};

/// A place in a text, which must outlive it.
class Place
{
public:
    /// A place without a node is only a part of the text.
    Place(const JsonText *text, const JsonText::Node *node, Span span) : m_text(text), m_node(node), m_span(span) {}

    /// The value of the last member of this name (only that one counts), or of an element. If there is none, this place
    /// stays the result of all further steps.
    Place operator[](const QString &name) const;
    Place operator[](int index) const;
    /// The member's name in place of its value.
    Place name() const;

    const JsonText &text() const { return *m_text; }
    Span span() const { return m_span; }
    /// The start of the place.
    Position position() const { return m_text->positionOf(m_span.begin); }

private:
    Place to(const JsonText::Node *node) const;

    const JsonText *m_text;
    const JsonText::Node *m_node;
    Span m_span;
};

}
