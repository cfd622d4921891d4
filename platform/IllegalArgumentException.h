#pragma once

#include <Vokit/ExceptionQt>

namespace vo {

/// An argument that a call can't work with.
class VOKIT_EXPORT IllegalArgumentException : public ExceptionQt
{
public:
    IllegalArgumentException(const QString &argument, const QString &message,
                             const ExceptionQt *cause);
    ~IllegalArgumentException() override;

    /// Which argument; may be empty.
    const QString &argument() const { return m_argument; }

private:
    QString m_argument;
};

} // namespace vo
