#include "App/Heap.h"

#include <malloc.h>

namespace brellin {

void useOneHeap()
{
    constexpr int growth = 8 << 20;
    ::mallopt(M_ARENA_MAX, 1);
    ::mallopt(M_TOP_PAD, growth);
}

} // namespace brellin
