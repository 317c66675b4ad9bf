#include "Agent/NeverSet.h"

namespace brellin {

NeverSet::NeverSet(const std::vector<NeverProposed> &all)
{
    for (const NeverProposed &one : all)
        m_all.insert(entriesOf(one));
}

NeverSet::Entries NeverSet::entriesOf(const NeverProposed &one) const
{
    Entries entries{one.kind, m_folders.entryOf(one.source), {}};
    if (one.destination)
        entries.destination = m_folders.entryOf(*one.destination);
    return entries;
}

} // namespace brellin
