#pragma once
// Runs small main scripts whose built-in macros are the real ones; assignments with files are left out.
//
//     StaticMacroRun run;
//     run.Execute("$T ::STREAM = KVL:GENERATION:DATE()$$T$");

#include "builtins/StaticMacros.h"
#include "interpreter/ScriptRun.h"

namespace kvl {

class RealStaticMacros : public SimpleBuiltIns {
public:
    bool RunStaticMacro(CPatternSchema& schema, int identifier, MacroValue& value) override {
        return kvl::RunStaticMacro(schema, identifier, value);
    }
};

class StaticMacroRun : public ScriptRun {
public:
    StaticMacroRun() {
        SetBuiltIns(&macros_);
        Process().mainScriptDirectory = "/home";
    }

private:
    RealStaticMacros macros_;
};

}  // namespace kvl
