#include "interpreter/StandardScript.h"

#include <memory>

#include "messages/FileReports.h"
#include "platform/Platform.h"
#include "text/Paths.h"

namespace kvl {

namespace {

constexpr std::string_view kScriptFile = "_1.kvl";
constexpr std::string_view kInputFile = "_1_input.txt";

// All files of the folder, as far as the program brings them along.
constexpr std::string_view kShippedFiles[] = {
    kScriptFile, "project.kvl", "contacts.type", "overview.pattern", "contacts.txt",
};

std::string InputText(std::string_view emptyScript) {
    return "FILE_PATH=" + PathPart(emptyScript, PathMode::Directory) +
           "\r\nFILE_NAME=" + PathPart(emptyScript, PathMode::Name);
}

int WriteFile(std::string_view path, std::string_view text) {
    std::unique_ptr<FileWriter> writer;
    if (const int error = Files().OpenWriter(path, WriteMode::Replace, writer)) return error;
    if (const int error = writer->Write(text)) return error;
    return writer->Commit();
}

}  // namespace

StandardScript::~StandardScript() {
    if (!privateDirectory_.empty()) Files().RemovePrivateDirectory(privateDirectory_);
}

bool StandardScript::Prepare(std::string_view emptyScript) {
    const std::string text = InputText(emptyScript);
    directory_ = PathPart(Files().ExecutablePath(), PathMode::Directory) + "_1/";
    if (WriteFile(directory_ + std::string(kInputFile), text) == 0) return true;
    if (!CopyToPrivateDirectory()) return false;
    const std::string inputPath = directory_ + std::string(kInputFile);
    const int error = WriteFile(inputPath, text);
    return error == 0 || ReportCreateFailure(inputPath, error, MessageContext());
}

bool StandardScript::CopyToPrivateDirectory() {
    if (const int error = Files().MakePrivateDirectory(privateDirectory_)) {
        const std::string reason = "MakeDirectory(). " + ErrorText(error);
        return Report(ERR_EXEC_ENVIRON_FATAL_1, std::string_view(reason));
    }
    const std::string target = privateDirectory_ + "/";
    for (const std::string_view file : kShippedFiles) {
        if (!CopyFileBytes(directory_ + std::string(file), target + std::string(file), MessageContext())) return false;
    }
    directory_ = target;
    return true;
}

std::string StandardScript::Path() const {
    return directory_ + std::string(kScriptFile);
}

}  // namespace kvl
