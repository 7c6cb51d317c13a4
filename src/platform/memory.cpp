// Allocator tuning for the window.
#include "platform/memory.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace brindar {

void LimitAllocatorArenas()
{
#if defined(__GLIBC__)
    mallopt(M_ARENA_MAX, 2);
#endif
}

}  // namespace brindar
