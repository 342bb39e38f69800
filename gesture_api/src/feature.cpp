#include <gesture_api/feature.h>

#include <vellix/platform/devcaps.h>
#include <vellix/platform/slateview.h>

#include <algorithm>
#include <ostream>

namespace vellix {
namespace gesture {

static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../gesture_api/src/feature", line}, message.toStdString()));
}

Feature::Feature(const QString &name, const std::function<bool()> &supported, QObject *parent)
    : QObject(parent), m_name(name), m_predicate(supported)
{
}

QString Feature::name() const
{
    return m_name;
}

bool Feature::supported() const
{
    if (!m_supported)
        m_supported = m_predicate && m_predicate();
    return *m_supported;
}

bool Feature::allSupported(const QList<Feature *> &features)
{
    return std::all_of(features.cbegin(), features.cend(),
                       [](const Feature *feature) { return !feature || feature->supported(); });
}

static std::string statusText(bool supported)
{
    return " - " + ansicolor::beginSeq(38, 2, supported ? 0x00ff00 : 0xff0000, 1) + (supported ? "yes" : "no ")
            + "\033[0m";
}

void Feature::prettyPrintListMultiline(std::ostream &out, const QList<Feature *> &features)
{
    out << "features:" << std::endl;
    std::vector<std::string> names;
    std::vector<std::string> statuses;
    for (const Feature *feature : features) {
        if (!feature)
            continue;
        names.push_back(feature->name().toStdString());
        statuses.push_back(statusText(feature->supported()));
    }
    names = Utf8::alignLeftByWhitespace(names);
    for (std::size_t i = 0; i < names.size(); ++i)
        out << "  " << names[i] << statuses[i] << std::endl;
}

FeaturesProvider::FeaturesProvider(QObject *parent) : QObject(parent) {}

Either<Error, QList<Feature *>> FeaturesProvider::featuresByNames(const QSet<QString> &names) const
{
    const QList<Feature *> all = allFeatures();
    QList<Feature *> found;
    for (const QString &name : names) {
        const auto feature = std::find_if(all.cbegin(), all.cend(), [&name](const Feature *candidate) {
            return candidate && candidate->name() == name;
        });
        if (feature == all.cend())
            return fail(__LINE__, QStringLiteral("unknown feature: `") + name + QLatin1Char('`'));
        found.append(*feature);
    }
    return Right(found);
}

DefaultFeaturesProvider::DefaultFeaturesProvider(QObject *parent)
    : FeaturesProvider(parent), m_features{new Feature(QStringLiteral("frontlight"), device_has_frontlight, this),
                                           new Feature(QStringLiteral("smartlight"), hw_is_frontlight_color_supported,
                                                       this),
                                           new Feature(QStringLiteral("tts"), SvTTSSupported, this)}
{
}

QList<Feature *> DefaultFeaturesProvider::allFeatures() const
{
    return m_features;
}

}
}
