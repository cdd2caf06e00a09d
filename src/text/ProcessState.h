#pragma once
// What is process-wide, in one plain place. A run begins by resetting it, so that a test can do many runs in one
// process.

#include <memory>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "text/RandomSource.h"

namespace kvl {

class CPatternSchema;

enum class OptionValue { vc2008 = 4, vc6 = 5, yes = 6, no = 7 };

// The environment options: the text of each and, where it has one, its enumerated form.
struct EnvironmentOptions {
    std::string testdifText, mergeText, first, ptypeText, runextendedText, logfileText;
    OptionValue ptype = OptionValue::vc2008;
    OptionValue logfile = OptionValue::yes;
    OptionValue testdif = OptionValue::no;
    OptionValue merge = OptionValue::no;
    OptionValue runextended = OptionValue::yes;
};

struct ProcessState {
    // messages
    std::vector<std::string> vectorMessageParameters = std::vector<std::string>(58);
    int warningCount = 0;
    int errorCount = 0;
    int errorCountAtFirstCommand = 0;  // errors counted before the first command ran never fail a command
    std::unique_ptr<FileWriter> logStream;
    int logWriteCount = 0;
    bool dumpsEnabled = false;

    // run
    bool runSucceeded = false;
    bool usageShown = false;
    bool overwritePromptEnabled = true;
    EnvironmentOptions options;

    // front end
    bool textMode = true;
    bool atLineStart = false;
    int nextBlockId = 0;

    // interpreter
    std::string mainScriptDrive;
    std::string mainScriptDirectory;  // without its last separator, but for the root
    CPatternSchema* root = nullptr;   // not owned
    std::string generationMark;       // "${" GUID "}$"
    int stoppedLine = -1;             // of the first command that failed, for a run that would end in silence
    std::string stoppedPath;
    int macroDepth = 0;               // nested macro calls running now
    unsigned long elementTables = 0;  // made so far; gives each its number
    RandomSource random;
};

ProcessState& Process();
// A fresh state; called at the start of a run.
void ResetProcessState();

}  // namespace kvl
