#include "interpreter/MacroCallee.h"

#include <algorithm>
#include <utility>

namespace kvl {

namespace {

// As many are kept as a macro may need that calls itself, or that is called with several instances in turn.
constexpr std::size_t kMostIdleCallees = 16;

// The instance that the variable is or belongs to; null for a plain variable.
const CTypeSchema* InstanceOf(const CVariable* variable) {
    if (!variable) return nullptr;
    const HeldEntity* held = variable->typeId == kTypeInstance ? variable->typeSchema.get() : variable->elementOf;
    return dynamic_cast<const CTypeSchema*>(held);
}

bool IsBelow(std::string_view label, std::string_view prefix) {
    return label.starts_with(prefix) && (label.size() == prefix.size() || label[prefix.size()] == ':');
}

}  // namespace

void StandFor(CVariable& variable, const CVariable& original) {
    variable.elementTypeId = original.elementTypeId;
    variable.typeName = original.typeName;
    variable.userTypeName = original.userTypeName;
    variable.isConstant = original.isConstant;
    variable.ShareValue(original);
}

// The elements that one argument brings in, under the names that they have in the callee.
class MacroCallee::Elements {
public:
    struct Named {
        CVariable* variable;
        std::string name;
    };

    // All names are found before the first label moves: arguments may be parts of one instance, or twice the same.
    Elements(const CTypeSchema& instance, int first, int last, bool forElement, const std::string& formalName)
        : rowCount(last - first + 1), isElement(forElement) {
        const std::string& prefix = instance.elements[static_cast<std::size_t>(first)].variable->label;
        for (int row = first; row <= last; ++row) {
            const ElementEntry& entry = instance.elements[static_cast<std::size_t>(row)];
            const std::string& label = entry.variable->label;
            if (entry.mark == kMarkEnd || label.empty()) continue;
            // An unnamed list has a label of its own that is below nothing.
            const bool moves = IsBelow(label, prefix);
            named.push_back({entry.variable, moves ? formalName + label.substr(prefix.size()) : label});
        }
    }

    int rowCount;
    bool isElement;  // the argument is the first of them, not an instance
    std::vector<Named> named;
};

MacroCallee::Shape MacroCallee::ShapeOf(const BoundArgument& argument) {
    Shape shape{argument.typeId, argument.variable == nullptr, 0, -1, -1};
    if (argument.variable == nullptr) return shape;
    const CTypeSchema* instance = InstanceOf(argument.variable);
    if (!instance) return shape;
    const bool isInstance = argument.typeId == kTypeInstance;
    const int rowCount = static_cast<int>(instance->elements.size());
    const int first = isInstance ? 0 : argument.variable->firstElement;
    const int last = isInstance ? rowCount - 1 : argument.variable->lastElement;
    if (first < 0 || last >= rowCount) return shape;
    return {argument.typeId, false, instance->elementTableId, first, last};
}

bool MacroCallee::Fits(const std::vector<BoundArgument>& arguments) const {
    return std::equal(
        parameters_.begin(), parameters_.end(), arguments.begin(), arguments.end(),
        [](const Parameter& parameter, const BoundArgument& argument) { return parameter.shape == ShapeOf(argument); });
}

bool MacroCallee::TakeArguments(const std::vector<FormalParameter>& formals,
                                const std::vector<BoundArgument>& actuals) {
    if (!isEntered_ && !EnterParameters(formals, actuals)) return false;
    for (std::size_t i = 0; i < actuals.size(); ++i) {
        CVariable* parameter = parameters_[i].own;
        if (!parameter) continue;
        if (!actuals[i].variable) {
            parameter->SetText(actuals[i].name);
        } else {
            StandFor(*parameter, *actuals[i].variable);
            parameter->ownsStorage = false;
        }
    }
    ExchangeLabels();
    return true;
}

bool MacroCallee::EnterParameters(const std::vector<FormalParameter>& formals,
                                  const std::vector<BoundArgument>& actuals) {
    std::vector<Elements> groups;
    for (std::size_t i = 0; i < actuals.size(); ++i) {
        const Shape shape = ShapeOf(actuals[i]);
        CVariable* parameter = schema->EnterVariable(formals[i].name, actuals[i].typeName, shape.typeId);
        if (!parameter) return false;
        const bool isElement = shape.elementTableId != 0 && shape.typeId != kTypeInstance;
        if (shape.elementTableId != 0) {
            groups.emplace_back(*InstanceOf(actuals[i].variable), shape.firstElement, shape.lastElement, isElement,
                                formals[i].name);
        }
        parameters_.push_back({shape, isElement ? nullptr : parameter});
    }
    EnterElements(groups);
    schema->variableTable.BeginLocals();
    isEntered_ = true;
    return true;
}

// Of several names for one element the one by the widest argument becomes its label, so that all below one instance or
// category keeps one prefix; the others are further names for it in the table.
void MacroCallee::EnterElements(std::vector<Elements>& groups) {
    std::stable_sort(groups.begin(), groups.end(),
                     [](const Elements& a, const Elements& b) { return a.rowCount > b.rowCount; });
    for (const Elements& group : groups) {
        for (const Elements::Named& element : group.named) {
            CVariable& variable = *element.variable;
            if (!variable.relabelled) {
                exchanged_.push_back({&variable, element.name, schema.get(), schema->currentLine});
            }
            variable.relabelled = variable.entered = true;
            if (group.isElement && &element == &group.named.front()) {
                schema->variableTable.ReplaceBorrowed(&variable, element.name);  // the variable made for the parameter
            } else {
                schema->variableTable.InsertBorrowed(&variable, element.name);
            }
        }
    }
    for (const Exchanged& element : exchanged_)
        element.variable->relabelled = false;
}

void MacroCallee::ExchangeLabels() {
    for (Exchanged& element : exchanged_) {
        CVariable& variable = *element.variable;
        std::swap(variable.label, element.label);
        std::swap(variable.ownerEntity, element.owner);
        std::swap(variable.entityLine, element.entityLine);
        if (variable.ownerList) variable.ownerList->ColumnsRelabelled();
    }
    hasCalleeLabels_ = !hasCalleeLabels_;
}

void MacroCallee::RestoreLabels() {
    if (hasCalleeLabels_) ExchangeLabels();
}

bool MacroCallee::EndCall() {
    RestoreLabels();
    for (const Parameter& parameter : parameters_) {
        if (parameter.own && !parameter.shape.isLiteral) parameter.own->DestroyValue();  // this side's hold on it
    }
    return schema->TakeBackLocals();
}

// --- IdleCallees ---

const std::shared_ptr<IdleCallees>& CPatternSchema::Idle() const {
    if (!idleCallees_) idleCallees_ = std::make_shared<IdleCallees>();
    return idleCallees_;
}

std::unique_ptr<MacroCallee> IdleCallees::Take(const std::vector<BoundArgument>& arguments) {
    const auto fits = [&arguments](const std::unique_ptr<MacroCallee>& callee) { return callee->Fits(arguments); };
    const auto found = std::find_if(callees_.rbegin(), callees_.rend(), fits);
    if (found == callees_.rend()) return nullptr;
    std::unique_ptr<MacroCallee> callee = std::move(*found);
    callees_.erase(std::next(found).base());
    return callee;
}

void IdleCallees::Give(std::unique_ptr<MacroCallee> callee) {
    if (!callee->EndCall()) return;
    if (callees_.size() == kMostIdleCallees) callees_.erase(callees_.begin());
    callees_.push_back(std::move(callee));
}

}  // namespace kvl
