#include "values/CVariable.h"

#include "text/Paths.h"
#include "values/CVariableKVLCategoryList.h"
#include "values/CategoryVariables.h"
#include "values/DirectoryVariable.h"
#include "values/ElementaryVariables.h"
#include "values/EntityVariables.h"

namespace kvl {

CVariable::CVariable(int id) : typeId(id), typeName(GetTypeName(id)), elementKind(GetElementKind(id)) {}

bool CVariable::AssignValue(CVariable& source, const LoopStack& loops) {
    return CopyValue(source, loops);
}

void CVariable::ReleaseValue() {
    if (ownsStorage) DestroyValue();
}

std::string CVariable::DumpValue(const LoopStack&) const {
    return {};
}

void CVariable::SetOwnerEntity(const VariableOwner* owner) {
    ownerEntity = owner;
    entityLine = owner->CurrentLine();
}

std::string CVariable::GetFileLabelKey() const {
    return (ownerEntity ? ownerEntity->SourceName() : std::string()) + "@" + label;
}

std::string CVariable::GetRangeLabel() const {
    std::string text = "[" + std::to_string(firstElement);
    if (firstElement != lastElement) text += "," + std::to_string(lastElement);
    return text + "] " + label;
}

bool CVariableText::CopyValue(const CVariable& source, const LoopStack&) {
    if (&source != this) SetText(source.GetText());
    return true;
}

void CVariableText::ShareValue(const CVariable& source) {
    if (const auto* text = dynamic_cast<const CVariableText*>(&source)) value_ = text->value_;
}

void CVariableText::CreateValue() {
    value_ = std::make_shared<TextValue>();
}

void CVariableText::DestroyValue() {
    value_.reset();
}

void CVariableText::SetText(std::string_view text) {
    if (!value_) CreateValue();
    value_->Set(text);
}

void CVariableText::SetText(std::string&& text) {
    if (!value_) CreateValue();
    value_->Set(std::move(text));
}

void CVariableText::AppendText(std::string_view text) {
    if (!value_) CreateValue();
    value_->Append(text);
}

std::string_view CVariableText::GetText() const {
    return value_ ? value_->View() : std::string_view();
}

void CVariableText::ClearValue() {
    if (value_) value_->Clear();
}

void CVariableText::SetPlace(std::shared_ptr<const std::string> keep, std::string_view view) {
    if (!value_) CreateValue();
    value_->SetPlace(std::move(keep), view);
}

namespace {

template <class Class>
std::unique_ptr<CVariable> Make() {
    return std::make_unique<Class>();
}

using Maker = std::unique_ptr<CVariable> (*)();

// By type identifier; null where an id has no class.
constexpr Maker kMakers[] = {
    nullptr,
    Make<CVariableKVLStream>,
    Make<CVariableKVLString>,
    Make<CVariableKVLInteger>,
    Make<CVariableKVLFloat>,
    Make<CVariableKVLBool>,
    Make<CVariableKVLIdentifier>,
    Make<CVariableKVLWhiteSpace>,
    Make<CVariableKVLRecursionIdentifier>,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    Make<CVariableLiteralWWS>,
    Make<CVariableLiteralNWS>,
    nullptr,
    Make<CVariableKVLCategorySequence>,
    Make<CVariableKVLCategoryNested>,
    Make<CVariableKVLCategoryList>,
    Make<CVariableKVLCategoryChoice>,
    Make<CVariableKVLCategoryPermutation>,
    Make<CVariableKVLCategoryDistance>,
    Make<CVariableKVLCategoryStream>,
    Make<CVariableKVLCategoryOption>,
    Make<CVariableKVLCategoryLine>,
    Make<CVariableKVLCategoryRecursion>,
    Make<CVariableKVLDirectory>,
    Make<CVariableKVLType>,
    Make<CVariableKVLPattern>,
    Make<CVariableKVLTypeInstance>,
    Make<CVariableKVLScript>,
    Make<CVariableKVLStaticMacro>,
};

}  // namespace

std::unique_ptr<CVariable> MakeVariable(int typeId) {
    if (typeId < 0 || typeId > kTypeStatic || !kMakers[typeId]) return nullptr;
    std::unique_ptr<CVariable> variable = kMakers[typeId]();
    variable->CreateValue();
    return variable;
}

}  // namespace kvl
