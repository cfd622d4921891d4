#include <Vokit/IllegalArgumentException>

namespace vo {

IllegalArgumentException::IllegalArgumentException(const QString &argument, const QString &message,
                                                   const ExceptionQt *cause)
    : ExceptionQt(message, cause)
    , m_argument(argument)
{}

IllegalArgumentException::~IllegalArgumentException() = default;

} // namespace vo
