#pragma once
// The schema on which a call of a macro runs, with the macro's parameters in its variable table. It is kept from call
// to call: one whose arguments bring in the same variables finds them entered, and costs no more than the values and
// labels that it hands over. Looking a name up is as cheap then as in a table that lives for the whole run.
//
// Parameters see the caller's values, they do not copy them. An element of an instance is entered in the callee's table
// itself, so that its lists are the caller's lists; for the time of the call its label is the parameter's.

#include <memory>
#include <string>
#include <vector>

#include "interpreter/CPatternSchema.h"

namespace kvl {

class MacroCallee {
public:
    // Shares what is compiled of `macro`, which need not outlive this.
    explicit MacroCallee(const CPatternSchema& macro) : schema(macro.Clone()) {}
    MacroCallee(const MacroCallee&) = delete;
    MacroCallee& operator=(const MacroCallee&) = delete;

    // Would these arguments make the parameters that are in the table already?
    bool Fits(const std::vector<BoundArgument>& arguments) const;

    // Gives the parameters the values of the arguments, entering them first if no call has done so. Elements have their
    // labels of the callee from here on. False after a message.
    [[nodiscard]] bool TakeArguments(const std::vector<FormalParameter>& formals,
                                     const std::vector<BoundArgument>& actuals);
    // Gives elements their labels back. Does nothing when they have them.
    void RestoreLabels();
    // After a call: lets go of the values and of all that the body declared. False if no other call can use this.
    [[nodiscard]] bool EndCall();

    const std::unique_ptr<CPatternSchema> schema;

private:
    // What of an argument decides which variables its parameter brings into the table.
    struct Shape {
        int typeId;
        bool isLiteral;
        unsigned long elementTableId;  // of the instance that the argument is or belongs to; 0 if there is none
        int firstElement, lastElement;

        bool operator==(const Shape& other) const = default;
    };
    struct Parameter {
        Shape shape;
        CVariable* own;  // made for the parameter, in the table; null where it is an element of an instance
    };
    // An element and what it is to the other side: to the callee between calls, to the caller during a call.
    struct Exchanged {
        CVariable* variable;  // not owned
        std::string label;
        const VariableOwner* owner;
        int entityLine;
    };
    class Elements;

    static Shape ShapeOf(const BoundArgument& argument);
    [[nodiscard]] bool EnterParameters(const std::vector<FormalParameter>& formals,
                                       const std::vector<BoundArgument>& actuals);
    void EnterElements(std::vector<Elements>& groups);
    void ExchangeLabels();

    std::vector<Parameter> parameters_;
    std::vector<Exchanged> exchanged_;
    bool isEntered_ = false;
    bool hasCalleeLabels_ = false;
};

// Makes `variable` one more name for the value of `original`, with its properties.
void StandFor(CVariable& variable, const CVariable& original);

// The callees of one macro that no call uses now.
class IdleCallees {
public:
    // One that fits the arguments; null if there is none.
    std::unique_ptr<MacroCallee> Take(const std::vector<BoundArgument>& arguments);
    // Keeps a callee for later calls, if it can be used again.
    void Give(std::unique_ptr<MacroCallee> callee);

private:
    std::vector<std::unique_ptr<MacroCallee>> callees_;  // the one used last behind
};

}  // namespace kvl
