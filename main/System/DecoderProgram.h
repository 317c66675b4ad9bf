#pragma once

#include "Base/Location.h"

#include <sys/types.h>

/// "brellin-bild" as a process of its own, whatever is talked with it.
namespace brellin::decoderProgram {

/// Starts it with one word and these two as its input and output. Gives the system's number of an error, or 0.
int start(pid_t &pid, const Location &program, const char *word, int input, int output);

/// Ends it at once: it writes nothing and holds nothing. One that hangs in a dead network volume cannot even be killed, and
/// is not waited for longer than a second.
void end(pid_t pid);

} // namespace brellin::decoderProgram
