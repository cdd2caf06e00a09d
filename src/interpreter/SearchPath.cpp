// A file that is looked for in several directories.
#include <vector>

#include "interpreter/ScriptLoading.h"
#include "messages/FileReports.h"
#include "text/Paths.h"

namespace kvl {

namespace {

std::vector<std::string_view> SplitCandidates(std::string_view fileText) {
    std::vector<std::string_view> candidates;
    for (;;) {
        const std::size_t separator = fileText.find(';');
        candidates.push_back(fileText.substr(0, separator));
        if (separator == std::string_view::npos) return candidates;
        fileText.remove_prefix(separator + 1);
    }
}

std::string ShownSearchPath(const std::vector<std::string_view>& candidates) {
    std::string path;
    for (const std::string_view candidate : candidates) {
        if (!path.empty()) path += ';';
        path += PathPart(PathPart(candidate, PathMode::Directory), PathMode::Display);
    }
    return path;
}

MessageContext FileContext(const CPatternSchema& schema, std::string_view fileName, std::string_view searchPath) {
    MessageContext context = schema.GetMessageContext();
    context.Set(ERRSTR_FILE_NAME, fileName).Set(ERRSTR_PATH, searchPath);
    return context;
}

// The directories in which the file exists; false after a message about a path that cannot be looked at.
bool FindHits(const std::vector<std::string_view>& candidates, const CPatternSchema& schema,
              std::vector<std::string>& hits) {
    for (const std::string_view candidate : candidates) {
        FileState state;
        if (CheckFile(candidate, state)) hits.push_back(PathPart(candidate, PathMode::Directory));
        if (state.invalidName) return ReportFileError(ERR_EXEC_SCRIPT_FILE_4, candidate, schema.GetMessageContext());
        if (state.accessDenied) return ReportFileError(ERR_EXEC_SCRIPT_FILE_15, candidate, schema.GetMessageContext());
    }
    return true;
}

}  // namespace

std::string FindInSearchPath(std::string_view fileText, bool quiet, const CPatternSchema& schema) {
    if (fileText.empty()) {
        if (!quiet) Report(ERR_EXEC_SCRIPT_FILE_1, FileContext(schema, "", ""));
        return {};
    }
    const std::vector<std::string_view> candidates = SplitCandidates(fileText);
    const std::string fileName = PathPart(candidates.front(), PathMode::NameAndExtension);
    std::vector<std::string> hits;
    if (!FindHits(candidates, schema, hits)) return {};
    if (hits.empty()) {
        if (!quiet) Report(ERR_EXEC_SCRIPT_FILE_1, FileContext(schema, fileName, ShownSearchPath(candidates)));
        return {};
    }
    if (hits.size() > 1) {
        MessageContext context = FileContext(schema, fileName, ShownSearchPath(candidates));
        context.Set(ERRSTR_PATH1, hits[0]).Set(ERRSTR_PATH2, hits[1]);
        Report(WARN_EXEC_SCRIPT_FILE_2, context);
    }
    return hits.front() + fileName;
}

}  // namespace kvl
