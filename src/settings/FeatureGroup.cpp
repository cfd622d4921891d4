#include <Vokit/FeatureGroup>

namespace vo {

FeatureGroup::FeatureGroup(int id, const QString &firstText, const QString &secondText)
    : m_id(id)
    , m_firstText(firstText)
    , m_secondText(secondText)
{}

FeatureGroup::~FeatureGroup()
{
    qDeleteAll(m_features);
}

void FeatureGroup::addFeature(Feature *feature)
{
    m_features.insert(feature->id(), feature);
}

bool FeatureGroup::containsFeature(int featureId) const
{
    return m_features.contains(featureId);
}

} // namespace vo
