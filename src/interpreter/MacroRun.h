#pragma once
// One call of a script or pattern while it runs: binds the arguments to the parameters of the macro head, runs the body
// on the callee, and brings back what the call leaves behind. Cost of a call, apart from the body: proportional to the
// parameters (an instance counts with its elements), never to the length of the macro or to the size of a list.
//
// Parameters see the caller's values, they do not copy them. An element of an instance is entered in the callee's table
// itself, so that its lists are the caller's lists; for the time of the call its label is the parameter's. All labels
// are put back when this object goes, however the call ended.

#include <string>
#include <string_view>
#include <vector>

#include "interpreter/CPatternSchema.h"

namespace kvl {

class MacroRun {
public:
    // All of them outlive this. The frame has its arguments and its names.
    MacroRun(CPatternSchema& callee, MacroFrame& frame, RunContext& run) : callee_(callee), frame_(frame), run_(run) {}
    ~MacroRun() { RestoreLabels(); }
    MacroRun(const MacroRun&) = delete;
    MacroRun& operator=(const MacroRun&) = delete;

    // Appends what a pattern writes to the caller's output.
    [[nodiscard]] bool Run(OutputText& output);

private:
    [[nodiscard]] bool RunMacroBlock(OutputText& output);

    // --- _Parameters ---
    [[nodiscard]] bool BindParameters();
    [[nodiscard]] bool BindParameter(const FormalParameter& formal, BoundArgument& actual) const;
    [[nodiscard]] bool CreateParameters();
    [[nodiscard]] bool CreateParameter(const FormalParameter& formal, const BoundArgument& actual);
    [[nodiscard]] bool CopyBack();
    [[nodiscard]] bool CopyDirectoriesBack(const FormalParameter& formal, const BoundArgument& actual);

    // The elements of one actual argument under the names that they have in the callee.
    struct NamedElement {
        CVariable* variable;
        std::string name;
    };
    struct ParameterElements {
        int rowCount;
        bool isElement;  // the argument is the first of them, not an instance
        std::vector<NamedElement> elements;
    };
    struct SavedLabel {
        CVariable* variable;  // not owned
        std::string label, sourceName;
        const VariableOwner* owner;
        int entityLine;
    };
    void CollectElements(const CTypeSchema& type, const CVariable& actual, const std::string& formalName);
    void EnterParameterElements();
    void Relabel(const NamedElement& element);
    void EnterUnderName(const NamedElement& element, bool replace);
    void RestoreLabels();

    CPatternSchema& callee_;
    MacroFrame& frame_;
    RunContext& run_;
    std::vector<ParameterElements> parameterElements_;
    std::vector<SavedLabel> savedLabels_;
};

}  // namespace kvl
