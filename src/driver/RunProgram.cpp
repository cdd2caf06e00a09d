// The run in its order: banner, arguments, options, path check, log, script, summary, pause.
#include "driver/RunProgram.h"

#include <cstdint>
#include <new>
#include <string>
#include <string_view>

#include "builtins/InstallBuiltIns.h"
#include "driver/Banner.h"
#include "driver/CCmd.h"
#include "interpreter/ScriptLoading.h"
#include "messages/CMessage.h"
#include "messages/FileReports.h"
#include "messages/Log.h"
#include "platform/Platform.h"
#include "text/LowerCase.h"
#include "text/Paths.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

constexpr std::size_t kStackBytes = std::size_t{1} << 30;
constexpr std::string_view kOverwriteMode = "-overwrite";
constexpr std::size_t kElapsedRuleWidth = 38;

void PressEnter() {
    Print("\n\n");
    Print("\t\t\t\tPlease press [Enter] to continue!\n");
    TheConsole().Flush();
    TheConsole().ReadByte();
}

void ShowUsage() {
    Process().usageShown = true;
    Print(
        "\nPlease run kvlRun.exe by double click on a KVL main script file *.kvl.\n"
        "kvlPrep.exe is used to create and edit KVL main script files *.kvl as part of kvlPrep projects.\n");
    PressEnter();
}

bool ApplyMode(const std::string& modeArgument) {
    if (modeArgument.empty()) return true;
    const std::string mode = LowerCase(std::string_view(modeArgument));
    if (mode != kOverwriteMode) {
        MessageContext context;
        context.Set(ERRSTR_ARGUMENT, mode);
        return Report(ERR_EXEC_COMMAND_ARG_2, context);
    }
    Process().overwritePromptEnabled = false;
    return true;
}

// The log beside the script, with what the console has shown so far. Without it the run goes on as well.
void StartLog(std::string_view path, std::string_view banner, std::string_view mainScriptLine) {
    // The text decides: after a wrong word the enumerated form still holds its start value.
    if (Process().options.logfileText != "yes") return;
    Process().dumpsEnabled = true;
    std::string directory = PathPart(path, PathMode::Directory);
    if (directory.ends_with('/')) directory.pop_back();
    directory += "\\LogFiles";
    if (!MakeDirectory(directory, MessageContext())) return;
    if (!OpenLog(directory + "\\" + PathPart(path, PathMode::NameAndExtension) + ".log.txt")) return;
    WriteLog(banner);
    WriteLog(mainScriptLine);
}

bool RunMainScript(const std::string& path, std::string& banner) {
    const std::string mainScriptLine = "       - Main Script: " + path + "\n\n";
    Print(mainScriptLine);
    StartLog(path, banner, mainScriptLine);
    banner.clear();
    return LoadAndRun(path);
}

bool RunMain(CCmd& command, int argc, const char* const* argv, std::string& banner) {
    std::string programArgument, mainScriptArgument, modeArgument;
    if (SplitArguments(argc, argv, programArgument, mainScriptArgument, modeArgument).empty()) {
        ShowUsage();
        return true;
    }
    if (!ApplyMode(modeArgument)) return false;
    command.ReadEnvironmentOptions();  // wrong values are reported and stop nothing
    std::string path;
    return CheckMainScriptPath(mainScriptArgument, path) && RunMainScript(path, banner);
}

// The compilers and the input parser recurse as deep as their input is nested, hence the stack.
bool RunMainOnLargeStack(CCmd& command, int argc, const char* const* argv, std::string& banner) {
    bool succeeded = false;
    try {
        RunOnLargeStack(kStackBytes, [&] { succeeded = RunMain(command, argc, argv, banner); });
    } catch (const std::bad_alloc&) {
        return Report(ERR_EXEC_ENVIRON_FATAL_1, "Out of memory. ");
    }
    return succeeded;
}

void LogElapsedTime(std::int64_t startTime) {
    const std::string seconds = std::to_string(TheSurroundings().Now() - startTime);
    WriteLog("\n" + std::string(kElapsedRuleWidth, '_') + "\telapsed time: " + seconds + " seconds.\n\n\n");
}

void ProgramEnd(bool succeeded, std::int64_t startTime) {
    if (Process().usageShown) return;
    WriteSummary();
    LogElapsedTime(startTime);
    CloseLog();
    if (!succeeded || HasMessages()) PressEnter();
}

}  // namespace

bool RunProgram(int argc, const char* const* argv) {
    ResetProcessState();
    CCmd command;
    const std::int64_t startTime = TheSurroundings().Now();
    InstallBuiltIns();
    std::string banner = BannerText();
    Print(banner);
    const bool succeeded = RunMainOnLargeStack(command, argc, argv, banner);
    ProgramEnd(succeeded, startTime);
    Process().runSucceeded = succeeded;
    TheConsole().Flush();
    return succeeded;
}

}  // namespace kvl
