#pragma once

#include <Vokit/FeatureMatrix>

#include <QStringList>

namespace test {

/// A Feature, FeatureGroup or UserGroup that writes its end into a list.
template <class Base>
class Doomed : public Base
{
public:
    template <typename... Arguments>
    Doomed(QStringList &ends, const QString &name, Arguments... arguments)
        : Base(arguments...)
        , m_ends(ends)
        , m_name(name)
    {}
    ~Doomed() override { m_ends << m_name; }

private:
    QStringList &m_ends;
    QString m_name;
};

using DoomedFeature = Doomed<vo::Feature>;
using DoomedUserGroup = Doomed<vo::UserGroup>;
using DoomedFeatureGroup = Doomed<vo::FeatureGroup>;

} // namespace test
