// The methods of a directory: its paths, file names below them, and making it.
#include <algorithm>

#include "builtins/StaticMacros.h"
#include "messages/FileReports.h"
#include "text/Paths.h"
#include "text/Utf8.h"
#include "values/DirectoryVariable.h"

namespace kvl {

namespace {

struct DirectoryMacroRow {
    int id;
    std::string_view declaration;
    std::size_t fewest, most;  // arguments
};

constexpr DirectoryMacroRow kDirectoryMacros[] = {
    {cmd_static_make_directory, "KVL:DIRECTORY:MKDIR(D, S)", 2, 2},
    {cmd_directory_method_make_directory, "MKDIR(S)", 0, 1},
    {cmd_directory_method_file, "FILE(S)", 1, 1},
    {cmd_directory_method_set_path, "SET_PATH(S)", 1, 1},
};

constexpr std::size_t kMostPaths = 100000;  // of one directory: those below each other multiply

struct DirectoryArguments {
    CVariableKVLDirectory* directory = nullptr;
    std::string text;
};

// The directory is the first argument of the static macro, and the receiver of a method.
bool FindDirectory(const CPatternSchema& schema, const DirectoryMacroRow& macro, const MacroValue& value,
                   DirectoryArguments& checked) {
    BoundArgument receiver;
    if (macro.id == cmd_static_make_directory) {
        receiver = value.arguments[0];
    } else {
        if (!schema.FindDeclaredVariable(value.object, receiver.variable)) return false;
        receiver.typeName = receiver.variable->typeName;
        receiver.name = receiver.variable->label;
    }
    checked.directory = dynamic_cast<CVariableKVLDirectory*>(receiver.variable);
    return checked.directory || ReportArgumentType(schema, receiver, GetTypeName(kTypeDirectory), "D");
}

// A source in UTF-8 names files in UTF-8, though its special letters are single bytes here. A macro may get the name from
// the main script.
bool TakePath(const CPatternSchema& schema, const BoundArgument& argument, std::string& path) {
    std::string_view text;
    if (!TakeStreamArgument(schema, argument, "S", text)) return false;
    path = text;
    if (schema.utf8Source || RootSchema().utf8Source) EncodeSpecialLetters(path, 0);
    return true;
}

bool CheckDirectoryArguments(const CPatternSchema& schema, const DirectoryMacroRow& macro, const MacroValue& value,
                             DirectoryArguments& checked) {
    const std::size_t count = value.arguments.size();
    if (count < macro.fewest || count > macro.most) return ReportArgumentCount(schema, macro.declaration);
    if (!FindDirectory(schema, macro, value, checked)) return false;
    return count == 0 || TakePath(schema, value.arguments.back(), checked.text);
}

// The paths of the directory above a child; null for a top directory. False if there is no such directory.
bool FindParentPaths(const CPatternSchema& schema, std::string_view label, const std::vector<std::string>*& paths) {
    const std::size_t colon = label.rfind(':');
    if (colon == std::string_view::npos) return true;
    CVariable* variable = nullptr;
    schema.FindVariable(label.substr(0, colon), variable);
    const auto* parent = dynamic_cast<const CVariableKVLDirectory*>(variable);
    if (parent) paths = &parent->GetValue().paths;
    return parent != nullptr;
}

// Without a path of its own the directory is the one of the main script.
bool SetPath(const CPatternSchema& schema, CVariableKVLDirectory& directory, std::string_view spec) {
    const std::string& scriptDirectory = Process().mainScriptDirectory;
    const std::string kept(spec.empty() ? scriptDirectory : spec);
    directory.SetPathSpec(kept);
    directory.SetPaths({});
    const std::vector<std::string>* parentPaths = nullptr;
    std::vector<std::string> paths;
    if (!FindParentPaths(schema, directory.label, parentPaths)) return false;
    const auto components = static_cast<std::size_t>(std::ranges::count(kept, ';')) + 1;
    if (components * (parentPaths ? parentPaths->size() : 1) > kMostPaths) {
        return schema.Fail(ERR_EXEC_ENVIRON_FATAL_1, ERRSTR_FATAL_REASON,
                           "Directory " + directory.label + " grows beyond 100000 paths. ");
    }
    if (!ResolveDirectoryPaths(kept, scriptDirectory, parentPaths, paths)) return false;
    directory.SetPaths(std::move(paths));
    return true;
}

bool MakeBelow(const CPatternSchema& schema, const CVariableKVLDirectory& directory, std::string_view below,
               std::string& made) {
    std::string path(below);
    if (!IsAbsolutePath(below)) path = std::string(directory.GetText()) + "\\" + path;
    if (!ResolveAbsolutePath(path) || !MakeDirectory(path, schema.GetMessageContext())) return false;
    made = std::move(path);
    return true;
}

// Where the file may be: below each path, in order, for a reading command to search.
std::string FileCandidates(const CVariableKVLDirectory& directory, std::string_view name) {
    std::string candidates;
    for (const std::string& path : directory.GetValue().paths) {
        if (!candidates.empty()) candidates += ';';
        candidates.append(path).append("\\").append(name);
    }
    return candidates;
}

}  // namespace

bool RunDirectoryMacro(CPatternSchema& schema, int identifier, MacroValue& value) {
    const DirectoryMacroRow& macro = kDirectoryMacros[identifier - cmd_static_make_directory];
    DirectoryArguments checked;
    if (!CheckDirectoryArguments(schema, macro, value, checked)) return false;
    switch (macro.id) {
        case cmd_directory_method_set_path:
            return SetPath(schema, *checked.directory, checked.text);
        case cmd_directory_method_file:
            value.result = FileCandidates(*checked.directory, checked.text);
            return true;
        default:
            return MakeBelow(schema, *checked.directory, checked.text, value.result);
    }
}

}  // namespace kvl
