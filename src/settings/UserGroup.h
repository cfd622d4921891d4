#pragma once

#include <Vokit/vokit_export.h>

namespace vo {

/// A group of users: a column of a FeatureMatrix. Applications derive from it to say more of one.
class VOKIT_EXPORT UserGroup
{
public:
    explicit UserGroup(int id)
        : m_id(id)
    {}
    virtual ~UserGroup() = default;

    int id() const { return m_id; }

private:
    int m_id;
};

} // namespace vo
