// The host's reader of JSON gives Qt's answer for every document, also in the types, or leaves the document to Qt.

#include "fuzzing.h"
#include "jsonreader.h"

#include <cstring>

static bool same(const QVariant &one, const QVariant &other);

static bool sameMaps(const QVariantMap &one, const QVariantMap &other)
{
    return std::equal(one.keyValueBegin(), one.keyValueEnd(), other.keyValueBegin(), other.keyValueEnd(),
                      [](const auto &a, const auto &b) { return a.first == b.first && same(a.second, b.second); });
}

static bool same(const QVariant &one, const QVariant &other)
{
    if (one.userType() != other.userType() || one.isNull() != other.isNull())
        return false;
    switch (one.userType()) {
    case QMetaType::QVariantMap: return sameMaps(one.toMap(), other.toMap());
    case QMetaType::QVariantList: {
        const QVariantList a = one.toList();
        const QVariantList b = other.toList();
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
    }
    case QMetaType::Double: {
        const double a = one.toDouble();
        const double b = other.toDouble();
        return std::memcmp(&a, &b, sizeof a) == 0;
    }
    default: return one == other;
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QJsonParseError error;
    QVariant read;
    if (vellix::components::readJson(text, &read)) {
        const QVariant expected = QJsonDocument::fromJson(text, &error).toVariant();
        fuzzing::require(error.error == QJsonParseError::NoError && same(read, expected));
    }
    return 0;
}
