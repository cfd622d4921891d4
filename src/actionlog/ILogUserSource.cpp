#include <Vokit/ILogUserSource>

namespace vo {

ILogUserSource::~ILogUserSource() = default;

} // namespace vo
