// Instances of declared types: made empty by a declaration or filled by a parse, and published through the labels of
// their elements, which become variables like any other.
#include "interpreter/CPatternSchema.h"
#include "interpreter/ScriptLoading.h"
#include "messages/Log.h"
#include "text/Paths.h"
#include "typeschema/InputParser.h"

namespace kvl {

namespace {

// One parse with its progress lines and its test for a remainder.
class InstanceParse {
public:
    InstanceParse(const CPatternSchema& schema, CTypeSchema& instance) : schema_(schema), instance_(instance) {
        info_.streamName = instance.dataStream;
        info_.fileName = instance.dataFile;
        info_.displayPath = PathPart(instance.dataPath, PathMode::Display);
    }

    [[nodiscard]] bool ParseCreateInstanceFromType(std::string_view source, std::string_view typeName,
                                                   std::string_view instanceName) {
        ReportParse(info_);
        if (!ParseInput(instance_)) {
            if (HasMessages()) return false;
            return schema_.Fail(ERR_EXEC_ENVIRON_FATAL_1, ERRSTR_FATAL_REASON, "ParseCreateInstanceFromType()");
        }
        if (instance_.FindRemainder()) return false;
        info_.kindName = instance_.dataStream.empty() ? "Data" : "Data Stream";
        ReportParse(info_);
        ReportCreation(source, typeName, instanceName);
        return true;
    }

private:
    static void ReportCreation(std::string_view source, std::string_view typeName, std::string_view instanceName) {
        std::string text = "\nCreate Variable ";
        text.append(instanceName).append("::").append(typeName).append(" From ").append(source) += '\n';
        Print(text);
        if (!LogIsOpen()) return;
        const std::string rule(78, '_');
        WriteLog(text + rule + "\n\ncursor position\n\t\t\tpattern item\n" + rule + "\n\n");
    }

    const CPatternSchema& schema_;
    CTypeSchema& instance_;
    ParseInfo info_;
};

}  // namespace

bool CPatternSchema::CreateInstanceOfLoadedType(std::string_view name, std::string_view typeName, bool bracket) {
    const CVariable* type = FindDeclaredType(typeName);
    if (!type || !type->typeSchema) {
        return Fail(ERR_DECL_SCRIPT_VAR_3, ERRSTR_VAR_NAME, name, ERRSTR_VAR_TYPE, typeName);
    }
    const CVariable* root = type->typeSchema->GetRootVariable();
    if (!root) return Fail(ERR_DECL_SCRIPT_VAR_3, ERRSTR_VAR_NAME, name, ERRSTR_VAR_TYPE, typeName);
    if (bracket && root->IsList()) {
        return Fail(ERR_EXEC_SCRIPT_MACRO_9, ERRSTR_COMMAND, "CreateInstanceOfLoadedType " + root->label);
    }
    const auto instance = std::make_shared<CTypeSchema>();
    instance->CopyDeclaration(static_cast<const CTypeSchema&>(*type->typeSchema));
    if (bracket) instance->WrapInList();
    if (!instance->PrepareInstance(name)) return false;
    return EnterInstance(name, bracket ? std::string(typeName) + "[]" : std::string(typeName), instance,
                         bracket ? int{kTypeType} : 0);
}

bool CPatternSchema::EnterInstance(std::string_view name, std::string_view typeName,
                                   std::shared_ptr<CTypeSchema> instance, int elementTypeId) {
    CVariable* variable = EnterVariable(name, typeName, kTypeInstance);
    if (!variable) return false;
    variable->elementTypeId = elementTypeId;
    TakeInstance(*variable, std::move(instance));
    return true;
}

// An instance that the variable held before is kept for as long as a loop runs over one of its lists.
void CPatternSchema::TakeInstance(CVariable& variable, std::shared_ptr<CTypeSchema> instance) {
    if (auto old = std::static_pointer_cast<CTypeSchema>(variable.typeSchema)) {
        RemoveElements(variable, *old);
        typeList.remove(old);
        replacedInstances_.push_back(std::move(old));
    }
    typeList.push_back(instance);
    variable.typeSchema = instance;
    variable.ownsStorage = true;
    variable.ownerList = nullptr;
    variable.ownerList = FindListOf(variable);
    declaredTypes.insert_or_assign(instance->instanceName, instance);
    EnterElements(*instance, 0, static_cast<int>(instance->elements.size()) - 1);
}

// The elements stand below the name of the variable that holds the instance, which need not be the name that their
// labels begin with: a call can give one instance to two parameters.
void CPatternSchema::RemoveElements(const CVariable& holder, const CTypeSchema& instance) {
    const CVariable* root = instance.GetRootVariable();
    if (!root) return;
    for (const ElementEntry& entry : instance.elements) {
        const std::string& label = entry.variable->label;
        if (label.empty()) continue;
        const bool isBelow = label.starts_with(root->label);
        const std::string name = isBelow ? holder.label + label.substr(root->label.size()) : label;
        if (variableTable.Find(name) == entry.variable) variableTable.Erase(name);
    }
}

// An element takes the place of a variable of its type that was there before. Among elements only unnamed lists can meet:
// the label of one is its row, which two instances may share, and no script can name it.
void CPatternSchema::EnterElements(CTypeSchema& instance, int first, int last) {
    for (int row = 0; row < static_cast<int>(instance.elements.size()); ++row) {
        const ElementEntry& entry = instance.elements[static_cast<std::size_t>(row)];
        CVariable& variable = *entry.variable;
        if (entry.mark == kMarkEnd || variable.label.empty()) continue;
        variable.elementOf = &instance;
        if (row < first || row > last) continue;
        variable.SetOwnerEntity(this);
        variable.entered = true;
        if (variableTable.InsertBorrowed(&variable)) continue;
        const CVariable* present = variableTable.Find(variable.label);
        const bool replaces = !variable.rangeText.empty() && present->typeId == variable.typeId;
        if (replaces && present != &variable) variableTable.ReplaceBorrowed(&variable);
    }
}

void CPatternSchema::FreeReplacedInstances(const LoopStack& loops) {
    std::erase_if(replacedInstances_, [&loops](const std::shared_ptr<CTypeSchema>& instance) {
        bool inUse = false;
        loops.FromTop([&](const RunningLoop& loop) {
            for (const ListCursor* cursor : {&loop.first, &loop.second}) {
                inUse = inUse || (cursor->list && cursor->list->elementOf == instance.get());
            }
        });
        return !inUse;
    });
}

bool CPatternSchema::ParseInstance(const CTypeSchema& declaredType, std::string&& text, std::string_view typeName,
                                   std::string_view instanceName, std::string_view source) {
    const auto instance = std::make_shared<CTypeSchema>();
    instance->CopyDeclaration(declaredType);
    if (!instance->PrepareInstance(instanceName)) return false;
    instance->input.SetText(std::move(text));
    InstanceParse parse(*this, *instance);
    if (!parse.ParseCreateInstanceFromType(source, typeName, instanceName)) return false;
    CVariable* present = variableTable.Find(instanceName);
    if (!present || present->typeId != kTypeInstance) return EnterInstance(instanceName, typeName, instance, 0);
    TakeInstance(*present, instance);
    return true;
}

}  // namespace kvl
