// How the process allocates memory.
#pragma once

namespace brindar {

// The window keeps every row of a folder, and rows are made on the reader threads: with
// one allocator arena per thread, each arena keeps its own freed pages and a big folder
// costs far more memory than its rows. Two arenas serve the scan as fast.
void LimitAllocatorArenas();

}  // namespace brindar
