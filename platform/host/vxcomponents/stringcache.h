#pragma once

#include <QString>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace vellix {
namespace components {

/// Makes the strings of a text and remembers short ones: keys and names occur many times, and then share their memory.
class StringCache
{
public:
    StringCache(const char *begin, const char *end) : m_begin(begin), m_hasUnicode(!isAscii(begin, end)) {}

    /// A string that is a part of the text, valid until the next call. Null if it is not valid UTF-8 or begins with a
    /// byte order mark.
    const QString *find(const char *string, int size)
    {
        if (size == 0 || size > longest || string + size - m_begin < 8)
            return make(string, size, &m_last);
        Entry &entry = m_entries[slot(string, size)];
        if (entry.size == size && std::memcmp(entry.text, string, static_cast<std::size_t>(size)) == 0)
            return &entry.value;
        entry.text = string;
        entry.size = size;
        return make(string, size, &entry.value);
    }

    /// The same for a string that was made of escape sequences. It is not remembered.
    const QString *decode(const char *string, int size)
    {
        m_hasUnicode = m_hasUnicode || !isAscii(string, string + size);
        return make(string, size, &m_last);
    }

    /// Whether there were other characters than ASCII.
    bool hasUnicode() const { return m_hasUnicode; }

private:
    static constexpr int longest = 40;
    static constexpr int bits = 8;

    struct Entry
    {
        const char *text = nullptr;
        int size = 0; // in bytes
        QString value;
    };

    // Eight bytes at a time.
    static bool isAscii(const char *at, const char *end)
    {
        quint64 all = 0;
        for (; end - at >= 8; at += 8)
            all |= qFromUnaligned<quint64>(at);
        for (; at != end; ++at)
            all |= static_cast<uchar>(*at);
        return (all & 0x8080808080808080) == 0;
    }

    // From the last characters, which differ most.
    static std::size_t slot(const char *string, int size)
    {
        const auto last = qFromLittleEndian<quint64>(string + size - 8) >> (8 * (8 - std::min(size, 8)));
        return ((last + static_cast<quint64>(size)) * 0x9e3779b97f4a7c15) >> (64 - bits);
    }

    const QString *make(const char *string, int size, QString *result) const
    {
        if (!m_hasUnicode) {
            *result = QString::fromLatin1(string, size);
            return result;
        }
        *result = QString::fromUtf8(string, size);
        const bool hasMark = size >= 3 && std::memcmp(string, "\xef\xbb\xbf", 3) == 0;
        return hasMark || result->contains(QChar::ReplacementCharacter) ? nullptr : result;
    }

    const char *const m_begin;
    bool m_hasUnicode;
    std::array<Entry, 1 << bits> m_entries;
    QString m_last;
};

}
}
