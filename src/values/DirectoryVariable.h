#pragma once
// A set of search directories.

#include <vector>

#include "values/CVariable.h"

namespace kvl {

class CVariableKVLDirectory final : public CVariable {
public:
    CVariableKVLDirectory() : CVariable(kTypeDirectory) {}
    bool CopyValue(const CVariable& source, const LoopStack& loops) override;
    void ShareValue(const CVariable& source) override;
    // Nothing is assigned yet; the only path is the working directory.
    void CreateValue() override;
    void DestroyValue() override;
    // A directory takes no text by assignment; see ResolveDirectoryPaths.
    void SetText(std::string_view) override {}
    // The paths joined by ";".
    std::string_view GetText() const override;
    void ClearValue() override;

    struct Value {
        std::string pathSpec;            // as assigned, a list separated by ";"
        std::vector<std::string> paths;  // resolved, absolute, in order
        std::string joined;              // paths joined by ";"; kept by SetPaths
    };
    const Value& GetValue() const { return *value_; }
    void SetPathSpec(std::string_view spec) { value_->pathSpec = spec; }
    void SetPaths(std::vector<std::string> paths);

private:
    std::shared_ptr<Value> value_;
};

// Resolves the relative paths of `spec` ("" stands for the script directory, also as a component): for a top directory
// (no `parentPaths`) against the script directory, for a child against every path of its parent. False if a path cannot
// be made absolute.
[[nodiscard]] bool ResolveDirectoryPaths(std::string_view spec, std::string_view scriptDirectory,
                                         const std::vector<std::string>* parentPaths, std::vector<std::string>& paths);

}  // namespace kvl
