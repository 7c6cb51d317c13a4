// Termination requests (SIGTERM at logout, SIGINT from Ctrl+C) turned into something an
// event loop can watch, so the window closes the normal way and saves its settings.
#pragma once

namespace brindar {

// Installs the handlers once and returns the read end of a pipe that becomes readable
// whenever such a signal arrives; -1 when the pipe cannot be made.
int TerminationSignalDescriptor();
// Reads what the signals wrote, so the descriptor waits for the next one.
void DrainTerminationSignals(int descriptor);

}  // namespace brindar
