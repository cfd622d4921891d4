#pragma once

#include <QString>

/// The file's name from the root on. QFileInfo would leave ":x" as it is: to Qt, what begins with a
/// colon is a resource.
QString absoluteName(const QString &file);
