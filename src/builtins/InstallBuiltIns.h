#pragma once

namespace kvl {

// Puts the built-in operations in place for the interpreter; once, before the first run.
void InstallBuiltIns();

}  // namespace kvl
