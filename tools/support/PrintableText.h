#pragma once

#include <QString>

/// The text as it may go to a terminal: control characters, which a file's name may hold, and
/// other invisible ones become \x1b and the like.
QString printable(const QString &text);
