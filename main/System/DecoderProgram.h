#pragma once

#include "Base/Location.h"

#include <sys/types.h>

/// Starts and ends the program "brellin-bild", independent of the protocol.
namespace brellin::decoderProgram {

/// Starts it with one argument, and these descriptors as input and output. Returns 0 or an errno value.
int start(pid_t &pid, const Location &program, const char *word, int input, int output);

/// Kills it at once, which is safe since it writes nothing. Waits up to a second: a process blocked on a dead network
/// volume cannot even be killed.
void end(pid_t pid);

} // namespace brellin::decoderProgram
