#pragma once

#include <Vokit/vokit_export.h>

namespace vo {

class IPersistDestination;

/**
 * The base of objects that load and save themselves.
 *
 * Both operations are there to be overridden. One that was forgotten leaves the destination alone
 * and writes a warning to the client's log, with the compiler's name for `Persistable *`: the text
 * is the same for every class that forgot.
 */
class VOKIT_EXPORT Persistable
{
public:
    virtual ~Persistable();

    virtual void load(IPersistDestination *destination);
    virtual void save(IPersistDestination *destination);
};

} // namespace vo
