// The terminal the program may have been started from.
#pragma once

namespace brindar {

// Whether standard error is a terminal (for a progress line).
bool StandardErrorIsTerminal();

}  // namespace brindar
