// The environment options are one table; each row names the reader that judges its value and where the value is kept.
#include "driver/CCmd.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "messages/CMessage.h"
#include "platform/Platform.h"
#include "text/LowerCase.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

constexpr int kContextEnvironment = 2;
constexpr int kOptionCount = 6;

enum class Reader { YesNo, Choice, FirstCharacter };

struct OptionRow {
    int id;
    int context;
    const char* name;
    const char* help;
    const char* defaultValue;
    std::string_view choices;  // separated by ";"
    Reader reader;
    std::string EnvironmentOptions::*text;
    OptionValue EnvironmentOptions::*value;  // null where the option has no enumerated form
};

using Options = EnvironmentOptions;
constexpr OptionRow kOptions[] = {
    {0, kContextEnvironment, "kvlrun_testdif", "help on kvlrun_testdif", "no", "yes;no", Reader::YesNo,
     &Options::testdifText, &Options::testdif},
    {1, kContextEnvironment, "kvlrun_merge", "help on kvlrun_merge", "no", "yes;no", Reader::YesNo, &Options::mergeText,
     &Options::merge},
    {2, kContextEnvironment, "kvlrun_first", "help on kvlrun_first", "", "", Reader::FirstCharacter, &Options::first,
     nullptr},
    {3, kContextEnvironment, "kvlrun_ptype", "help on kvlrun_ptype", "vc2008", "vc2008;vc6", Reader::Choice,
     &Options::ptypeText, &Options::ptype},
    {4, kContextEnvironment, "kvlrun_runextended", "help on kvlrun_runextended", "yes", "yes;no", Reader::YesNo,
     &Options::runextendedText, &Options::runextended},
    {5, kContextEnvironment, "kvlrun_logfile", "help on kvlrun_logfile", "no", "yes;no", Reader::YesNo,
     &Options::logfileText, &Options::logfile},
    {kOptionCount, kContextEnvironment, "", "", "", "", Reader::FirstCharacter, nullptr, nullptr},
};

struct ChoiceRow {
    std::string_view text;
    OptionValue value;
};
constexpr ChoiceRow kChoices[] = {
    {"vc2008", OptionValue::vc2008},
    {"vc6", OptionValue::vc6},
    {"yes", OptionValue::yes},
    {"no", OptionValue::no},
};

// Is the value one of the words of the list? No word is empty, and none holds a separator.
bool IsChoice(std::string_view choices, std::string_view value) {
    for (std::size_t begin = 0; begin <= choices.size();) {
        const std::size_t end = std::min(choices.find(';', begin), choices.size());
        if (choices.substr(begin, end - begin) == value) return true;
        begin = end + 1;
    }
    return false;
}

bool StoreChoice(const OptionRow& option, const std::string& value) {
    if (!IsChoice(option.choices, value)) {
        MessageContext context;
        context.Set(ERRSTR_VAR_NAME, std::string_view(option.name)).Set(ERRSTR_VAR_VALUE, value);
        return Report(ERR_EXEC_ENVIRON_VAR_1, context);  // the enumerated form keeps what it held
    }
    const auto* choice =
        std::find_if(std::begin(kChoices), std::end(kChoices), [&](const ChoiceRow& row) { return row.text == value; });
    Process().options.*option.value = choice->value;
    return true;
}

bool ReadOption(const OptionRow& option) {
    std::string value;
    const bool isSet = TheSurroundings().GetEnvironment(option.name, value);
    if (!isSet) value = option.defaultValue;
    if (isSet && option.reader == Reader::YesNo) value = LowerCase(std::string_view(value));
    if (option.reader == Reader::FirstCharacter) value.resize(std::min<std::size_t>(value.size(), 1));
    Process().options.*option.text = value;
    return option.reader == Reader::FirstCharacter || StoreChoice(option, value);
}

}  // namespace

bool CCmd::ReadEnvironmentOptions() {
    bool allGood = true;
    for (const OptionRow* option = kOptions; option->id != kOptionCount; ++option) {
        if (!ReadOption(*option)) allGood = false;
    }
    return allGood;
}

std::string SplitArguments(int argc, const char* const* argv, std::string& programArgument,
                           std::string& mainScriptArgument, std::string& modeArgument) {
    std::string* const positions[] = {&programArgument, &mainScriptArgument, &modeArgument};
    for (std::string* position : positions)
        position->clear();
    std::string joined;
    for (int i = 0; i < argc; ++i) {
        if (i < std::ssize(positions)) *positions[i] = argv[i];
        if (i >= std::ssize(positions)) joined += ' ';
        if (i > 0) joined += argv[i];
    }
    return joined;
}

}  // namespace kvl
