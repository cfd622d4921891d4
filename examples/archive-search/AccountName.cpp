#include "AccountName.h"

#include <pwd.h>

QString accountName(uint user)
{
    const passwd *entry = ::getpwuid(user);
    return entry ? QString::fromUtf8(entry->pw_name) : QString::number(user);
}
