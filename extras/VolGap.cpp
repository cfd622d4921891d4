#include <VokitExtras/VolGap>

namespace vo {

const char *VolGap::kindName() const
{
    switch (kind) {
    case TornEntry:
        return "torn entry";
    case UnfinishedRootTag:
        return "unfinished root tag";
    case IllegalCharacter:
        return "illegal character";
    case ForeignBytes:
        return "foreign bytes";
    case TruncatedEnd:
        return "truncated end";
    }
    return "";
}

} // namespace vo
