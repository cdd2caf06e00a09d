// Facts about the run, a unique text, and a line typed by the user.
#include <ctime>

#include "builtins/StaticMacros.h"
#include "messages/BuildStamp.h"
#include "messages/Log.h"
#include "platform/Platform.h"
#include "text/RandomSource.h"

namespace kvl {

namespace {

constexpr int kQuestionColour = 14;

std::string FormatLocalTime(const char* format) {
    std::tm parts{};
    if (!TheSurroundings().LocalTime(TheSurroundings().Now(), parts)) {
        Print("Invalid argument to _localtime64_s.");
        TheSurroundings().EndProcess(1);
    }
    char text[64];
    return std::string(text, std::strftime(text, sizeof text, format, &parts));
}

// Of a typed line only printable bytes count; the end of the input ends it as well.
std::string ReadTypedLine() {
    std::string line;
    for (int byte = TheConsole().ReadByte(); byte >= 0 && byte != '\n'; byte = TheConsole().ReadByte()) {
        if (byte >= 0x20 && byte <= 0x7E) line += static_cast<char>(byte);
    }
    return line;
}

bool AskUser(const CPatternSchema& schema, MacroValue& value) {
    if (value.arguments.size() != 1) return ReportArgumentCount(schema, "KVL:GENERATION:USER_INPUT(P)");
    std::string_view question;
    if (!TakeStreamArgument(schema, value.arguments[0], "P", question)) return false;
    PrintColoured("\n" + std::string(question), kQuestionColour);
    value.result = ReadTypedLine();
    Print("\n");
    return true;
}

}  // namespace

bool RunGenerationMacro(CPatternSchema& schema, int identifier, MacroValue& value) {
    switch (identifier) {
        case cmd_generation_user_input:
            return AskUser(schema, value);
        case cmd_generation_kvl_version_number:
            value.result = kVersion;
            return true;
        case cmd_generation_kvl_build_number:
            value.result = "Build" + ReadBuildStamp(BuildStamp()).number;
            return true;
        case cmd_generation_date:
            value.result = FormatLocalTime("%Y.%m.%d");
            return true;
        case cmd_generation_time:
            value.result = FormatLocalTime("%H:%M:%S");
            return true;
        case cmd_generation_guid:
            value.result = MakeGuidText();
            return true;
        default:
            return false;
    }
}

}  // namespace kvl
