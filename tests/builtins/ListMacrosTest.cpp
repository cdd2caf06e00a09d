// The macros that reorder or empty a list.
#include "StaticMacroRun.h"
#include "interpreter/ScriptCases.h"

namespace kvl {
namespace {

class ListMacros : public testing::TestWithParam<TextCase> {};

TEST_P(ListMacros, Run) {
    StaticMacroRun run;
    RunScriptCase(run, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Cases, ListMacros, testing::ValuesIn(ReadScriptCases("builtins/ListMacros.cases")), CaseName);

}  // namespace
}  // namespace kvl
