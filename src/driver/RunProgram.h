#pragma once
// The process from entry point to exit value.

namespace kvl {

// Resets the process state, shows the banner, runs the main script named in the arguments and ends with the summary.
// True when the run succeeded; the exit value is 0 then, else 1.
bool RunProgram(int argc, const char* const* argv);

}  // namespace kvl
