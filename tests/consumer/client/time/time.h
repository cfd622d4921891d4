#pragma once

namespace client {

inline int ownHeader()
{
    return 5;
}

} // namespace client
