#pragma once

#include <Vokit/vokit_export.h>

namespace vo {

/// Something that a user may do, filed in a FeatureGroup. Applications derive from it to say more.
class VOKIT_EXPORT Feature
{
public:
    explicit Feature(int id)
        : m_id(id)
    {}
    virtual ~Feature() = default;

    int id() const { return m_id; }

private:
    int m_id;
};

} // namespace vo
