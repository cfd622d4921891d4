#pragma once

#include <Vokit/ILogUserSource>

struct AuditOptions;

/// Who the audit log says is acting: two may have to sign in together.
class SignedInUser : public vo::ILogUserSource
{
public:
    explicit SignedInUser(const AuditOptions &options);

    /// The name given, or that of the user whom the program runs as.
    QString primaryName() const override { return m_primary; }
    QString secondaryName() const override { return m_secondary; }

private:
    QString m_primary;
    QString m_secondary;
};
