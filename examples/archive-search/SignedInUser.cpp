#include "SignedInUser.h"

#include "AccountName.h"
#include "Options.h"
#include "PrintableText.h"

#include <unistd.h>

SignedInUser::SignedInUser(const AuditOptions &options)
    : m_primary(printable(options.user.value_or(accountName(::getuid()))))
    , m_secondary(printable(options.secondUser.value_or(QString())))
{}
