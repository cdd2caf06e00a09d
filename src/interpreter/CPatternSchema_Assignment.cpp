// Assignments: the operands are resolved, the built-in forms (files, streams, declared things) have the first look,
// then lists and instances are copied as a whole, and what is left is one operator on two texts.
#include "interpreter/Assignment.h"
#include "messages/Log.h"
#include "text/Escapes.h"
#include "values/ElementaryVariables.h"
#include "values/ListAssignment.h"

namespace kvl {

namespace {

constexpr std::string_view kNamespace = "KVL:";

bool HoldsEntity(int typeId) {
    return typeId >= kTypeType && typeId <= kTypeScript;
}

// Since the first command ran.
bool HasErrors() {
    return Process().errorCount > Process().errorCountAtFirstCommand;
}

InstanceVariables VariablesOf(const CVariable& instance) {
    auto* schema = static_cast<CTypeSchema*>(instance.typeSchema.get());
    return schema ? schema->VariablesInOrder() : InstanceVariables();
}

}  // namespace

bool CPatternSchema::ExecuteAssignment(const PatternCommand& command, RunContext& run) {
    return Assignment(*this, command, command.sides->operatorId, run).Execute();
}

bool Assignment::Execute() {
    const bool callsMacro = sides_.operand1IsMacro != 0 || sides_.operand2IsMacro != 0;
    if (callsMacro) WriteNote(command_.commandText);
    if (!ResolveLeft() || !CheckCast() || !ResolveRight()) return false;
    if (!callsMacro && LoadsStream()) WriteNote(command_.commandText);
    if (operands_.operatorId == cmd_operator_assign) {
        bool done = false;
        const bool result = TheBuiltIns().ExecuteBuiltIn(schema_, command_, operands_, done, run_);
        schema_.FreeReplacedInstances(run_.loops);
        if (done) return result;
        MarkSecondList();
        if (!AssignStructures(done)) return false;
        if (done) return true;
    }
    return AssignText();
}

bool Assignment::ResolveLeft() {
    CPatternSchema::Operand operand;
    if (!schema_.ResolveOperand(sides_.operand1, false, CallArguments(sides_.operand1Arguments), operand, run_))
        return false;
    if (operand.variable->isConstant) return Incompatible();
    operands_.left = operand.variable;
    operands_.leftType = operand.variable->typeId;
    operands_.leftElementType = operand.variable->elementTypeId;
    operands_.leftText = std::move(operand.text);
    operands_.leftList = FindListOf(*operand.variable);
    operands_.castType = sides_.castType;
    return true;
}

// A cast is a check and converts nothing.
bool Assignment::CheckCast() const {
    const std::string& cast = operands_.castType;
    if (cast.empty()) return true;
    const CVariable& left = *operands_.left;
    const std::string& leftName = left.typeId == kTypeStatic ? left.label : left.typeName;
    if (cast == leftName) return true;
    const bool isLongForm =
        cast.starts_with(kNamespace) && std::string_view(cast).substr(kNamespace.size()) == leftName;
    return isLongForm || schema_.Fail(ERR_DECL_SCRIPT_VAR_8, ERRSTR_VAR_TYPE1, cast, ERRSTR_VAR_TYPE2, leftName);
}

bool Assignment::ResolveRight() {
    if (sides_.operand2Kind != 0) return ResolveLiteral();
    CPatternSchema::Operand operand;
    if (!schema_.ResolveOperand(sides_.operand2, true, CallArguments(sides_.operand2Arguments), operand, run_))
        return false;
    operands_.right = operand.variable;
    operands_.rightType = operand.variable->typeId;
    operands_.rightElementType = operand.variable->elementTypeId;
    operands_.rightText = std::move(operand.text);
    rightList_ = FindListOf(*operand.variable);
    rightIsResult_ = operand.hasText;
    return true;
}

bool Assignment::ResolveLiteral() {
    operands_.rightType = sides_.operand2Kind;
    operands_.rightText = sides_.operand2;
    if (sides_.operand2Kind != kConstantString) return true;
    if (!schema_.EvaluateWeakLiteral(command_.weakLiterals, "OPERAND2", operands_.rightText, run_)) return false;
    operands_.rightText = ResolveEscapes(operands_.rightText);
    return true;
}

// A stream is about to be read as a type, script, pattern or data, which may take its time.
bool Assignment::LoadsStream() const {
    return HoldsEntity(operands_.leftType) && operands_.rightType == kTypeStream &&
           operands_.leftElementType != operands_.rightType;
}

// A loop that builds its second list appends only the records to which something was assigned.
void Assignment::MarkSecondList() const {
    CVariableKVLCategoryList* list = operands_.left->ownerList;
    const RunningLoop* loop = run_.loops.FindLoop(list);
    if (loop && loop->second.list == list) list->MarkDirty(true);
}

bool Assignment::AssignStructures(bool& done) {
    CVariableKVLCategoryList* leftList = operands_.leftList;
    const bool leftIsInstance = operands_.leftType == kTypeInstance;
    const bool rightIsInstance = operands_.rightType == kTypeInstance;
    done = true;
    if (leftList && rightList_) return AssignFromList(*leftList, *rightList_, run_.loops) || Incompatible();
    if (leftList && rightIsInstance) {
        AssignFromInstance(*leftList, VariablesOf(*operands_.right), run_.loops);
        return true;
    }
    if (rightList_ && leftIsInstance) {
        AssignToInstance(*rightList_, VariablesOf(*operands_.left), run_.loops);
        return true;
    }
    if (leftIsInstance && rightIsInstance) {
        return operands_.left->AssignValue(*operands_.right, run_.loops) || Incompatible();
    }
    done = false;
    return true;
}

bool Assignment::AssignText() {
    VariableText left;
    if (!schema_.ReadVariable(*operands_.left, left, run_.loops, CreateRecord::Yes)) return false;
    VariableText right{operands_.rightText, rightIsResult_ ? int{kTypeStream} : operands_.rightType};
    if (operands_.right && !rightIsResult_ && !schema_.ReadVariable(*operands_.right, right, run_.loops)) return false;
    const bool grows = operands_.operatorId == cmd_operator_plus;
    if (grows && !schema_.FitsInText(left.text.size() + right.text.size())) return false;
    // A stream takes any text. It is extended in place, so that a text built in a loop costs what is added to it.
    if (grows && operands_.leftType == kTypeStream && !operands_.left->ownerList && !HasErrors()) {
        static_cast<CVariableKVLStream&>(*operands_.left).AppendText(right.text);
        return true;
    }
    OperatorResult result;
    if (!schema_.EvaluateOperands(left.text, left.type, operands_.operatorId, right.text, right.type, result)) {
        return false;
    }
    WriteVariableValue(*operands_.left, result.text, run_.loops);
    return true;
}

bool CPatternSchema::EvaluateOperands(std::string_view leftText, int leftType, int operatorId,
                                      std::string_view rightText, int rightType, OperatorResult& result) const {
    const bool rightIsText = IsCategoryType(rightType) || rightType == kTypePattern || rightType == kTypeStatic;
    const int left = IsCategoryType(leftType) ? int{kTypeStream} : leftType;
    const int right = rightIsText ? int{kTypeStream} : rightType;
    result = EvaluateOperator(leftText, left, operatorId, rightText, right, *this);
    if (HasErrors()) return false;
    return result.possible || Fail(ERR_DECL_SCRIPT_VAR_9);
}

}  // namespace kvl
