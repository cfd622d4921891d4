#include <Vokit/IInterface>

#include <cstring>

namespace vo {

IInterface::~IInterface() = default;

void *IInterface::getInterface(const char *name)
{
    return std::strcmp(name, "vo::IInterface") == 0 ? this : nullptr;
}

const void *IInterface::getInterface(const char *name) const
{
    return const_cast<IInterface *>(this)->getInterface(name);
}

} // namespace vo
