#include "values/DirectoryVariable.h"

#include "platform/Platform.h"
#include "text/Paths.h"

namespace kvl {

namespace {

std::string_view TrimBlanks(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

bool AddResolved(std::string_view directory, std::string_view component, std::vector<std::string>& paths) {
    std::string path = std::string(directory) + "\\" + std::string(component);
    if (!ResolveAbsolutePath(path)) return false;
    paths.push_back(std::move(path));
    return true;
}

}  // namespace

bool CVariableKVLDirectory::CopyValue(const CVariable& source, const LoopStack&) {
    if (const auto* directory = dynamic_cast<const CVariableKVLDirectory*>(&source)) {
        *value_ = Value(*directory->value_);
    }
    return true;
}

void CVariableKVLDirectory::ShareValue(const CVariable& source) {
    if (const auto* directory = dynamic_cast<const CVariableKVLDirectory*>(&source)) value_ = directory->value_;
}

void CVariableKVLDirectory::CreateValue() {
    value_ = std::make_shared<Value>();
    // A working directory that is gone is no path: an empty one would lead to the root.
    if (std::string here = Files().CurrentDirectory(); !here.empty()) SetPaths({std::move(here)});
}

void CVariableKVLDirectory::DestroyValue() {
    value_ = std::make_shared<Value>();
}

std::string_view CVariableKVLDirectory::GetText() const {
    return value_->joined;
}

void CVariableKVLDirectory::ClearValue() {
    *value_ = Value();
}

void CVariableKVLDirectory::SetPaths(std::vector<std::string> paths) {
    value_->paths = std::move(paths);
    value_->joined.clear();
    for (const std::string& path : value_->paths) {
        if (&path != &value_->paths.front()) value_->joined += ';';
        value_->joined += path;
    }
}

bool ResolveDirectoryPaths(std::string_view spec, std::string_view scriptDirectory,
                           const std::vector<std::string>* parentPaths, std::vector<std::string>& paths) {
    paths.clear();
    std::string_view rest = spec;
    for (bool more = true; more;) {
        const std::size_t separator = rest.find(';');
        std::string_view component = rest.substr(0, separator);
        more = separator != std::string_view::npos;
        if (more) rest.remove_prefix(separator + 1);
        if (TrimBlanks(component).empty()) component = scriptDirectory;

        if (IsAbsolutePath(component)) {
            paths.emplace_back(component);
        } else if (!parentPaths) {
            if (!AddResolved(scriptDirectory, component, paths)) return false;
        } else {
            for (const std::string& parent : *parentPaths) {
                if (!AddResolved(parent, component, paths)) return false;
            }
        }
    }
    return true;
}

}  // namespace kvl
