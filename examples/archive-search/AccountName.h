#pragma once

#include <QString>

/// The name of a user of this machine, or the number of one that has none.
QString accountName(uint user);
