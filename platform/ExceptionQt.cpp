#include <Vokit/ExceptionQt>

namespace vo {

ExceptionQt::ExceptionQt(const QString &message, const ExceptionQt *cause)
    : m_message(message)
    , m_what(message.toUtf8())
    , m_cause(cause)
{}

ExceptionQt::~ExceptionQt() = default;

const char *ExceptionQt::what() const noexcept
{
    return m_what.constData();
}

} // namespace vo
