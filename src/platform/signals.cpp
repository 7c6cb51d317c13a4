// Termination signals through a self-pipe.
#include "platform/signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>

namespace brindar {
namespace {

int gPipe[2] = {-1, -1};

// A signal handler may do almost nothing: one byte into a non-blocking pipe.
void OnTermination(int)
{
    const int saved = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(gPipe[1], &byte, 1);
    errno = saved;
}

}  // namespace

int TerminationSignalDescriptor()
{
    static std::once_flag once;
    std::call_once(once, [] {
        if (pipe2(gPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
            gPipe[0] = gPipe[1] = -1;
            return;
        }
        struct sigaction action = {};
        action.sa_handler = OnTermination;
        sigemptyset(&action.sa_mask);
        action.sa_flags = SA_RESTART;
        sigaction(SIGTERM, &action, nullptr);
        sigaction(SIGINT, &action, nullptr);
    });
    return gPipe[0];
}

void DrainTerminationSignals(int descriptor)
{
    char buffer[64];
    while (read(descriptor, buffer, sizeof buffer) > 0) {
    }
}

}  // namespace brindar
