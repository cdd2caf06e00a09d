// The questions whether existing files may be overwritten: one before the run, one for each file where that was asked
// for. Other keys than those named leave the question standing. The log keeps neither question nor answer.
#include <span>

#include "builtins/FileOperations.h"
#include "messages/Log.h"
#include "platform/Platform.h"
#include "text/LowerCase.h"

namespace kvl {

namespace {

constexpr int kQuestionColour = 14;

struct KeyRow {
    int key;  // of a letter the small one
    int mode;
};
constexpr KeyRow kRunKeys[] = {
    {kKeyEscape, kOverwriteAbort},
    {kKeyReturn, kOverwriteAll},
    {'a', kOverwriteAsk},
};
constexpr KeyRow kFileKeys[] = {
    {kKeyEscape, kOverwriteAbort},
    {kKeyReturn, kOverwriteAll},
    {'y', kOverwriteAsk},
    {'n', kOverwriteSkip},
};

constexpr std::string_view kRunQuestion =
    "This KVL script might overwrite some files!\n"
    "\n"
    "Press key [Esc] to abort.\n"
    "Press key [A] to be ask for each file to overwrite.\n"
    "Press key [Return] to overwrite all files without being ask.\n";
constexpr std::string_view kFileQuestion =
    "\n"
    "Do you agree to overwrite this file?\n";
constexpr std::string_view kFileAnswers =
    "\n"
    "Press key [Esc] to abort.\n"
    "Press key [Y] for YES to overwrite.\n"
    "Press key [N] for NO to not overwrite.\n"
    "Press key [Return] to overwrite all files without being ask anymore.\n";

// Ends at the end of input at the latest, which counts as [Esc].
int ReadAnswer(std::span<const KeyRow> keys) {
    for (;;) {
        const char key = LowerCase(static_cast<char>(TheConsole().ReadKey()));
        for (const KeyRow& row : keys) {
            if (row.key != key) continue;
            TheConsole().AcceptKey();
            return row.mode;
        }
    }
}

int Ask(CPatternSchema& schema, const std::string& question, std::span<const KeyRow> keys) {
    PrintColoured(question, kQuestionColour);
    schema.overwriteMode = ReadAnswer(keys);
    return schema.overwriteMode;
}

}  // namespace

int AskOverwriteRun(CPatternSchema& schema) {
    return Ask(schema, std::string(kRunQuestion), kRunKeys);
}

int AskOverwriteFile(CPatternSchema& schema, std::string_view path) {
    return Ask(schema, std::string(kFileQuestion).append(path).append("\n").append(kFileAnswers), kFileKeys);
}

}  // namespace kvl
