#pragma once
// What a user can set from outside the script: positional arguments and environment options.

#include <string>

namespace kvl {

class CCmd {
public:
    virtual ~CCmd() = default;
    virtual void Prepare() {}
    virtual void Finish() {}

    // Reads every option of the table in order; a wrong value is reported and the run goes on.
    bool ReadEnvironmentOptions();
};

// Fills the three strings (empty where missing) and returns all arguments behind the program joined.
std::string SplitArguments(int argc, const char* const* argv, std::string& programArgument,
                           std::string& mainScriptArgument, std::string& modeArgument);

}  // namespace kvl
