#include <Vokit/Persistable>

#include "LogNotice_p.h"

#include <typeinfo>

namespace vo {

namespace {

void warnOfMissing(const char *operation)
{
    // The type of the pointer, not of the object: readers of logs look for this one text.
    logNotice(Log::LevelWarning,
              QStringLiteral("You should overwrite Persistable::%1 for class %2")
                  .arg(QLatin1String(operation), QLatin1String(typeid(Persistable *).name())));
}

} // namespace

Persistable::~Persistable() = default;

void Persistable::load(IPersistDestination * /*destination*/)
{
    warnOfMissing("load");
}

void Persistable::save(IPersistDestination * /*destination*/)
{
    warnOfMissing("save");
}

} // namespace vo
