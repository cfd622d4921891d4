#pragma once

#include <Vokit/vokit_export.h>

#include <QString>

namespace vo {

/// Who is signed in, as the application knows it. The log asks at each entry, from the thread that
/// logs, with its lock held.
class VOKIT_EXPORT ILogUserSource
{
public:
    virtual ~ILogUserSource();

    virtual QString primaryName() const = 0;
    /// Stands in brackets behind the primary name; empty for none.
    virtual QString secondaryName() const = 0;
};

} // namespace vo
