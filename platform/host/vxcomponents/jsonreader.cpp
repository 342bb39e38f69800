#include "jsonreader.h"

#include "stringcache.h"

// For RapidJSON's headers: it must never end a program, and compares 16 characters at once where the target can.
#define RAPIDJSON_ASSERT(condition) static_cast<void>(0)
#if defined(__SSE2__)
#define RAPIDJSON_SSE2
#elif defined(__ARM_NEON)
#define RAPIDJSON_NEON
#endif
#include <rapidjson/reader.h>

#include <algorithm>
#include <cfloat>
#include <cstring>
#include <limits>
#include <vector>

namespace vellix {
namespace components {
namespace {

// RapidJSON calls itself for each level. Configurations have less than ten.
constexpr int maximumDepth = 64;
// Qt sorts the members of larger objects in a way in which any of several equal keys can win.
constexpr unsigned fewMembers = 16;

/// The text as RapidJSON's stream. RapidJSON believes that strings are decoded in place, so it does not copy them.
/// Nothing is overwritten: a string with escape sequences gets a buffer.
class Source
{
public:
    using Ch = char;

    Source(const char *begin, const char *end) : m_begin(begin), m_end(end), m_at(begin), m_nextEscape(begin) {}

    char Peek() const { return *m_at; }
    char Take() { return *m_at++; }
    std::size_t Tell() const { return static_cast<std::size_t>(m_at - m_begin); }

    // A string begins. Skips everything up to its end or its first escape sequence.
    char *PutBegin()
    {
        m_string = m_at;
        if (m_nextEscape < m_at)
            m_nextEscape = find('\\', m_at, m_end);
        m_plainEnd = std::min(find('"', m_at, m_end), m_nextEscape);
        m_at = m_plainEnd;
        m_decoded.clear();
        return const_cast<char *>(m_string);
    }

    // A decoded character, or the NUL with which RapidJSON replaces the quotation mark at the end.
    void Put(char c)
    {
        m_isPlain = m_at == m_plainEnd + 1;
        if (m_isPlain)
            return;
        if (m_decoded.empty())
            m_decoded.assign(m_string, m_plainEnd);
        m_decoded.push_back(c);
    }

    std::size_t PutEnd(char *) { return static_cast<std::size_t>(size()) + 1; }

    const char *at() const { return m_at; }
    const char *end() const { return m_end; }
    void moveTo(const char *at) { m_at = at; }

    // The last string. Only a plain one is a part of the text.
    bool isPlain() const { return m_isPlain; }
    const char *string() const { return m_isPlain ? m_string : m_decoded.data(); }
    int size() const
    {
        return m_isPlain ? static_cast<int>(m_plainEnd - m_string) : static_cast<int>(m_decoded.size()) - 1;
    }

private:
    static const char *find(char c, const char *begin, const char *end)
    {
        const void *found = std::memchr(begin, c, static_cast<std::size_t>(end - begin));
        return found ? static_cast<const char *>(found) : end;
    }

    const char *const m_begin;
    const char *const m_end;
    const char *m_at;
    const char *m_nextEscape;
    const char *m_string = nullptr;
    const char *m_plainEnd = nullptr;
    bool m_isPlain = true;
    std::vector<char> m_decoded;
};

/// Makes the variants from RapidJSON's events. Values wait on a stack until their list or object ends: then its size is
/// known. An event that returns false leaves the document to Qt's parser.
class Builder : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Builder>
{
public:
    Builder(const Source &source) : m_source(source), m_strings(source.at(), source.end())
    {
        m_values.reserve(64);
        m_keys.reserve(64);
    }

    bool Null() { return add(QVariant::fromValue(nullptr)); }
    bool Bool(bool value) { return add(value); }
    bool Int(int value) { return Int64(value); }
    bool Uint(unsigned value) { return Int64(value); }
    bool Int64(std::int64_t value) { return add(static_cast<qlonglong>(value)); }
    bool Uint64(std::uint64_t value)
    {
        if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
            return Int64(static_cast<std::int64_t>(value));
        return Double(static_cast<double>(value));
    }

    bool Double(double value)
    {
        const char *const begin = numberBegin();
        if (!isExact(begin) && !reread(begin, &value))
            return false;
        constexpr double limit = 9223372036854775808.0; // two to the power of 63
        const bool mayBeWhole = value >= -limit && value < limit;
        if (mayBeWhole && static_cast<double>(static_cast<std::int64_t>(value)) == value)
            return Int64(static_cast<std::int64_t>(value)); // as Qt's parser, also for 1e3 and 1.0
        return add(value);
    }

    bool String(const char *, rapidjson::SizeType, bool)
    {
        const QString *string = text();
        return string && add(*string);
    }

    bool Key(const char *, rapidjson::SizeType, bool)
    {
        const QString *key = text();
        if (key)
            m_keys.push_back(*key);
        return key;
    }

    bool StartObject() { return ++m_depth <= maximumDepth; }
    bool StartArray() { return ++m_depth <= maximumDepth; }

    bool EndObject(rapidjson::SizeType count)
    {
        QVariantMap map;
        auto value = m_values.end() - count;
        for (auto key = m_keys.end() - count; key != m_keys.end(); ++key, ++value)
            map.insert(map.cend(), *key, QVariant())->swap(*value); // quick if the file is sorted
        const bool isOdd = static_cast<unsigned>(map.size()) != count && (count > fewMembers || m_strings.hasUnicode());
        m_keys.erase(m_keys.end() - count, m_keys.end());
        return !isOdd && close(count, map);
    }

    bool EndArray(rapidjson::SizeType count)
    {
        QVariantList list;
        list.reserve(static_cast<int>(count));
        for (auto value = m_values.end() - count; value != m_values.end(); ++value) {
            list.append(QVariant());
            list.last().swap(*value);
        }
        return close(count, list);
    }

    const QVariant &document() const { return m_values.front(); }

private:
    const QString *text()
    {
        return m_source.isPlain() ? m_strings.find(m_source.string(), m_source.size())
                                  : m_strings.decode(m_source.string(), m_source.size());
    }

    template <class T>
    bool add(const T &value)
    {
        m_values.emplace_back(value);
        return true;
    }

    template <class Container>
    bool close(rapidjson::SizeType count, const Container &container)
    {
        --m_depth;
        m_values.erase(m_values.end() - count, m_values.end());
        return add(container);
    }

    // Where the number before the current place begins. There is a bracket before it.
    const char *numberBegin() const
    {
        const auto belongs = [](char c) {
            return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
        };
        const char *begin = m_source.at();
        while (belongs(begin[-1]))
            --begin;
        return begin;
    }

    // RapidJSON divides the digits by a power of ten. Up to 15 digits both are exact, and the quotient is the nearest.
    bool isExact(const char *begin) const
    {
        const auto isExponent = [](char c) { return c == 'e' || c == 'E'; };
        return FLT_EVAL_METHOD == 0 && m_source.at() - begin <= 16 && std::none_of(begin, m_source.at(), isExponent);
    }

    // The same number as Qt's parser, which refuses some that are too small or too large.
    bool reread(const char *begin, double *value) const
    {
        bool ok;
        *value = QByteArray::fromRawData(begin, static_cast<int>(m_source.at() - begin)).toDouble(&ok);
        return ok;
    }

    const Source &m_source;
    StringCache m_strings;
    std::vector<QVariant> m_values;
    std::vector<QString> m_keys;
    int m_depth = 0;
};

}
}
}

#ifdef RAPIDJSON_SIMD
namespace rapidjson {
// RapidJSON has this only for its own streams.
template <>
inline void SkipWhitespace(vellix::components::Source &source)
{
    source.moveTo(SkipWhitespace_SIMD(source.at(), source.end()));
}
}
#endif

namespace vellix {
namespace components {

bool readJson(const QByteArray &text, QVariant *document)
{
    const char *const begin = text.constData() + (text.startsWith("\xef\xbb\xbf") ? 3 : 0); // as Qt's parser
    Source source(begin, text.constData() + text.size());
    Builder builder(source);
    rapidjson::SkipWhitespace(source);
    const char first = source.Peek();
    if (first != '[' && first != '{') // Qt's documents are lists and objects
        return false;
    // The parser also stops at a NUL.
    if (!rapidjson::Reader().Parse<rapidjson::kParseInsituFlag>(source, builder) || source.at() != source.end())
        return false;
    *document = builder.document();
    return true;
}

}
}
