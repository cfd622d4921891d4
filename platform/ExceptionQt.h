#pragma once

#include <Vokit/vokit_export.h>

#include <QByteArray>
#include <QString>

#include <exception>

namespace vo {

/// The root of the client's exceptions. Thrown by value, caught by reference.
class VOKIT_EXPORT ExceptionQt : public std::exception
{
public:
    /// @param cause what led to this one, or null; not owned, so it must outlive the handler
    explicit ExceptionQt(const QString &message, const ExceptionQt *cause = nullptr);
    ~ExceptionQt() override;

    const QString &message() const { return m_message; }
    const ExceptionQt *cause() const { return m_cause; }

    /// The message in UTF-8, valid as long as this object.
    const char *what() const noexcept override;

private:
    QString m_message;
    QByteArray m_what;
    const ExceptionQt *m_cause;
};

} // namespace vo
