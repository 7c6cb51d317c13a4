// Allocator tuning for the window.
#include "platform/memory.h"

#include <cstdlib>  // defines __GLIBC__ on the GNU C library
#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace brindar {

void LimitAllocatorArenas()
{
#if defined(M_ARENA_MAX)
    mallopt(M_ARENA_MAX, 2);
#endif
}

}  // namespace brindar
