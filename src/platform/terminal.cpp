// The terminal through isatty.
#include "platform/terminal.h"

#include <unistd.h>

namespace brindar {

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) == 1; }

}  // namespace brindar
