#include <Vokit/UnexpectedTypeException>

namespace vo {

UnexpectedTypeException::UnexpectedTypeException(const QString &name, const QString &actualType,
                                                 const QString &expectedType,
                                                 const QString &message, const ExceptionQt *cause)
    : IllegalArgumentException(name, message, cause)
    , m_actualType(actualType)
    , m_expectedType(expectedType)
{}

UnexpectedTypeException::~UnexpectedTypeException() = default;

} // namespace vo
