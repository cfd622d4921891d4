#pragma once

#include <Vokit/Feature>

#include <QMap>
#include <QString>

namespace vo {

/**
 * Features that are allowed or forbidden together: a row of a FeatureMatrix.
 *
 * The two texts describe the group to whoever shows it; nothing here reads them.
 */
class VOKIT_EXPORT FeatureGroup
{
public:
    /// @param id also the row of the matrix, so below the bound that the matrix was made with
    FeatureGroup(int id, const QString &firstText, const QString &secondText);
    /// Deletes the features, in ascending order of their identifiers.
    virtual ~FeatureGroup();

    FeatureGroup(const FeatureGroup &) = delete;
    FeatureGroup &operator=(const FeatureGroup &) = delete;

    int id() const { return m_id; }
    const QString &firstText() const { return m_firstText; }
    const QString &secondText() const { return m_secondText; }
    /// Filed by identifier; they stay the group's.
    const QMap<int, Feature *> &features() const { return m_features; }

    /**
     * Takes the feature over. One of the same identifier leaves the group undeleted: it is the
     * caller's again.
     *
     * @param feature must not be null, and may belong to one group only: a feature that stands in
     *                two groups is two objects of one identifier
     */
    void addFeature(Feature *feature);
    bool containsFeature(int featureId) const;

private:
    int m_id;
    QString m_firstText;
    QString m_secondText;
    QMap<int, Feature *> m_features;
};

} // namespace vo
