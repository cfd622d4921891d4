#pragma once

#include <Vokit/IllegalArgumentException>

namespace vo {

/// A named object of another class than the call needs: a programming error of the caller.
class VOKIT_EXPORT UnexpectedTypeException : public IllegalArgumentException
{
public:
    /// The name also becomes the argument() of the base class.
    UnexpectedTypeException(const QString &name, const QString &actualType,
                            const QString &expectedType, const QString &message,
                            const ExceptionQt *cause);
    ~UnexpectedTypeException() override;

    const QString &name() const { return argument(); }
    const QString &actualType() const { return m_actualType; }
    const QString &expectedType() const { return m_expectedType; }

private:
    QString m_actualType;
    QString m_expectedType;
};

} // namespace vo
