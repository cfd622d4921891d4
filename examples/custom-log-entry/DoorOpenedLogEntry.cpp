#include "DoorOpenedLogEntry.h"

// All the log needs to know of the class, said once, while the program loads.
const vo::LogEntryRegistrar DoorOpenedLogEntry::sRegistrar = registrar();
