#pragma once
// One call of a script or pattern while it runs: binds the arguments to the parameters of the macro head, runs the body
// on a callee, and brings back what the call leaves behind. Cost of a call, apart from the body: proportional to the
// parameters (an instance counts with its elements), never to the length of the macro or to the size of a list.

#include <memory>

#include "interpreter/CPatternSchema.h"
#include "interpreter/MacroCallee.h"

namespace kvl {

class MacroRun {
public:
    // The frame, which has its arguments and names, and `run` outlive this; `macro` may be replaced by the call itself.
    MacroRun(const CPatternSchema& macro, MacroFrame& frame, RunContext& run);
    // Elements have their labels back, however the call ended.
    ~MacroRun();
    MacroRun(const MacroRun&) = delete;
    MacroRun& operator=(const MacroRun&) = delete;

    // Appends what a pattern writes to the caller's output.
    [[nodiscard]] bool Run(OutputText& output);
    const CompiledScript& Script() const { return *script_; }

private:
    [[nodiscard]] bool PrepareCallee();
    [[nodiscard]] bool RunBody(OutputText& output);

    // --- _Parameters ---
    [[nodiscard]] bool BindParameters();
    [[nodiscard]] bool BindParameter(const FormalParameter& formal, BoundArgument& actual) const;
    [[nodiscard]] bool CopyBack();
    [[nodiscard]] bool CopyListBack(const FormalParameter& formal, const BoundArgument& actual);
    [[nodiscard]] bool CopyDirectoriesBack(const FormalParameter& formal, const BoundArgument& actual);
    // The caller gets an instance that was made here, under that name.
    [[nodiscard]] bool HandOver(const CVariable& variable, const std::string& label);

    const CPatternSchema& macro_;  // not owned; not looked at any more when the body runs
    MacroFrame& frame_;
    RunContext& run_;
    const std::shared_ptr<CompiledScript> script_;
    const std::shared_ptr<IdleCallees> idle_;
    std::unique_ptr<MacroCallee> callee_;
};

}  // namespace kvl
