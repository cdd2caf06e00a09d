#pragma once
// What belongs to one macro call while it runs.

#include <string>
#include <string_view>
#include <vector>

#include "frontend/PatternCommand.h"
#include "values/CVariable.h"
#include "values/LoopStack.h"

namespace kvl {

class CPatternSchema;

// An argument of a call, resolved: a variable or the value of a literal.
struct BoundArgument {
    int typeId = 0;                                 // of the variable, or 9 to 12 for a literal
    int elementTypeId = 0;                          // the variable's
    std::string_view typeName;                      // the variable's, or of the system's table
    std::string_view userTypeName;                  // the variable's
    bool byValue = false;                           // written with "[]"
    std::string name;                               // the variable's full label, or the literal's value
    CVariable* variable = nullptr;                  // not owned; null for a literal
    CVariableKVLCategoryList* ownerList = nullptr;  // of which the variable is a column; not owned
};

// The arguments of a call as they are written and, once that is done, evaluated: by an operand before it looks at
// anything else, by other calls behind their trace, and never twice, since a literal may ask the user.
struct CallArguments {
    explicit CallArguments(const std::vector<ActualArgument>& arguments) : written(arguments) {}

    const std::vector<ActualArgument>& written;  // not owned
    std::vector<BoundArgument> bound;
    bool areBound = false;
};

struct MacroFrame {
    std::vector<BoundArgument> actualArguments;
    const std::vector<FormalParameter>* formalParameters = nullptr;  // of the macro head; not owned
    std::string_view macroName;
    CPatternSchema* caller = nullptr;  // not owned
    int callerLine = -1;
};
using CallStack = std::vector<MacroFrame*>;  // not owned; the running macro last

// What every command is run with.
struct RunContext {
    LoopStack loops;
    CallStack calls;
};

// What a built-in macro works on.
struct MacroValue {
    std::string result;
    std::string object, method;  // names of a method call's receiver and method
    std::vector<BoundArgument> arguments;
    RunContext& run;
};

}  // namespace kvl
