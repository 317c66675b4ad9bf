#include "Disk/SpareDescriptors.h"

#include "Disk/EntryPlace.h"

namespace brellin {

Result<SpareDescriptors> SpareDescriptors::take()
{
    // A removal needs its place, four folders, the one being entered and its listing stream.
    constexpr int enough = 8;
    SpareDescriptors spare;
    for (int i = 0; i < enough; ++i)
        spare.m_kept.push_back(TRY(openFolderPlace(Location("/"))));
    return spare;
}

} // namespace brellin
