#pragma once
// Runs small main scripts with files in memory. What a main script writes, by its placeholders and by the patterns that
// it calls, is kept; the built-in operations, which live above the interpreter, are played by a few simple ones.
//
//     ScriptRun run;
//     run.AddPattern("P", "#A::STRING", "<$A$>");
//     run.Execute("$X ::STRING = \"x\"$$P(X)$");    // the first line of the body is line 3
//     run.output == "<x>"; run.faults == "";

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "frontend/TypeFrontEnd.h"
#include "interpreter/CPatternSchema.h"
#include "interpreter/ScriptLoading.h"
#include "support/TestPlatform.h"

namespace kvl {

// FILE gives its argument, the stream macros their name and arguments, the generation macros their name. A stream
// assigned to an instance is parsed; everything else is left to the assignment. What it was asked is kept.
class SimpleBuiltIns : public BuiltIns {
public:
    std::string asked;  // "left=type,element,text right=type,element,text cast" of each assignment
    int callCount = 0;

    bool ExecuteBuiltIn(CPatternSchema& schema, const PatternCommand&, AssignmentOperands& operands, bool& handled,
                        RunContext&) override {
        const auto side = [](int type, int element, const std::string& text) {
            return std::to_string(type) + "," + std::to_string(element) + "," + text;
        };
        asked = "left=" + side(operands.leftType, operands.leftElementType, operands.leftText) +
                " right=" + side(operands.rightType, operands.rightElementType, operands.rightText) + " " +
                operands.castType;
        handled = operands.leftType == kTypeStatic;
        if (handled || !operands.right || operands.right->typeId != kTypeStream) return handled;
        CVariable* type = schema.FindDeclaredType(operands.left->typeName);
        if (!type) return false;
        handled = true;
        auto& declared = static_cast<CTypeSchema&>(*type->typeSchema);
        declared.dataStream = operands.right->label;
        return schema.ParseInstance(declared, std::string(operands.right->GetText()), operands.left->typeName,
                                    operands.left->label, operands.right->label);
    }

    bool RunStaticMacro(CPatternSchema&, int identifier, MacroValue& value) override {
        ++callCount;
        value.result = identifier == cmd_directory_method_file ? "" : GetCommandName(identifier);
        for (const BoundArgument& argument : value.arguments) {
            value.result += argument.variable ? argument.variable->GetText() : std::string_view(argument.name);
        }
        return true;
    }

    int AskOverwriteRun(CPatternSchema&) override { return kOverwriteAll; }
};

class ScriptRun {
public:
    ScriptRun() {
        ResetProcessState();
        Process().generationMark = "${MARK}$";
        SetBuiltIns(&builtIns);
        root = std::make_unique<CPatternSchema>(std::make_shared<CompiledScript>(CommandList()));
        Process().root = root.get();
    }
    ~ScriptRun() { Process().root = nullptr; }
    ScriptRun(const ScriptRun&) = delete;
    ScriptRun& operator=(const ScriptRun&) = delete;

    void AddPattern(const std::string& name, const std::string& parameters, const std::string& body) {
        AddMacro(kEntityMacroPattern, "PATTERN", name, parameters, body);
    }
    void AddScript(const std::string& name, const std::string& parameters, const std::string& body) {
        AddMacro(kEntityMacroScript, "SCRIPT", name, parameters, body);
    }
    // `declarations` such as "::PERSON = ::SEQUENCE{ NAME ::IDENTIFIER }".
    void AddType(const std::string& name, const std::string& declarations) {
        std::string text = "$BEGIN KVL VERSION=\"1.0.0\"$\n$TYPE " + declarations + "$\n$END KVL VERSION=\"1.0.0\"$\n";
        const std::shared_ptr<CTypeSchema> type = ParseTypeStream(kEntityType, name, text, MessageContext());
        std::string mainName;
        ASSERT_TRUE(type && type->CompileDeclaration(*root, mainName)) << outside.console.output;
        type->SetMainTypeName(name);
        types_.emplace_back(name, type);
    }

    // The body of a main script; its first line is line 3.
    bool Execute(const std::string& body) {
        outside.memory.Put("/home/main.kvl", MacroText("SCRIPT", "MAIN", "", body));
        const std::unique_ptr<CPatternSchema> compiled = Compile(kEntityMainScript, "/home/main.kvl");
        if (!compiled) return Finish(false);
        root->script = compiled->script;
        root->names = compiled->names;
        root->utf8Source = compiled->utf8Source;
        root->entityKind = kEntityMainScript;
        if (!CreateStaticMacros(*root) || !EnterMacros()) return Finish(false);
        OutputText text;
        RunContext context;
        const bool done = root->Execute(0, static_cast<int>(root->Commands().size()) - 1, text, context);
        output = text.Take();
        return Finish(done);
    }

    ScopedPlatform outside;
    SimpleBuiltIns builtIns;
    std::unique_ptr<CPatternSchema> root;
    bool succeeded = false;
    std::string output;
    std::string faults;  // "ERR_DECL_SCRIPT_VAR_5 4" for each message, its line behind it, joined by ", "

private:
    static std::string MacroText(const std::string& keyword, const std::string& name, const std::string& parameters,
                                 const std::string& body) {
        const std::string head = keyword + " " + name + "(" + parameters + ")$";
        return "$BEGIN KVL VERSION=\"1.0.0\"$\n$BEGIN " + head + "\n" + body + "$END " + head +
               "\n$END KVL VERSION=\"1.0.0\"$\n";
    }

    std::unique_ptr<CPatternSchema> Compile(int entityKind, std::string_view path) {
        ParseInfo info;
        std::unique_ptr<CPatternSchema> schema = CompileFile(entityKind, path, info);
        if (!schema) return nullptr;
        schema->entityKind = entityKind;
        return CheckBlocks(*schema) ? std::move(schema) : nullptr;
    }

    void AddMacro(int entityKind, const std::string& keyword, const std::string& name, const std::string& parameters,
                  const std::string& body) {
        const std::string path = "/home/" + name + ".txt";
        outside.memory.Put(path, MacroText(keyword, name, parameters, body));
        std::shared_ptr<CPatternSchema> macro = Compile(entityKind, path);
        ASSERT_TRUE(macro) << outside.console.output;
        macros_.emplace_back(name, std::move(macro));
    }

    bool EnterMacros() {
        for (const auto& [name, macro] : macros_) {
            const bool isScript = macro->entityKind == kEntityMacroScript;
            CVariable* variable = root->EnterVariable(name, isScript ? "KVL:SCRIPT" : "KVL:PATTERN", kTypeUnknown);
            if (!variable) return false;
            static_cast<CVariableKVLMacro*>(variable)->macroSchema = macro;
        }
        for (const auto& [name, type] : types_) {
            CVariable* variable = root->EnterVariable(name, "KVL:TYPE", kTypeType);
            if (!variable) return false;
            variable->typeSchema = type;
        }
        return true;
    }

    bool Finish(bool done) {
        succeeded = done;
        const std::string& console = outside.console.output;
        for (std::size_t at = console.find("ERROR: "); at != std::string::npos; at = console.find("ERROR: ", at)) {
            at += std::string_view("ERROR: ").size();
            if (!faults.empty()) faults += ", ";
            faults += console.substr(at, console.find('\n', at) - at);
            const std::size_t line = console.find("At line ", at);
            if (line != std::string::npos) faults += " " + std::to_string(std::atoi(console.c_str() + line + 8));
        }
        return done;
    }

    std::vector<std::pair<std::string, std::shared_ptr<CPatternSchema>>> macros_;
    std::vector<std::pair<std::string, std::shared_ptr<CTypeSchema>>> types_;
};

}  // namespace kvl
