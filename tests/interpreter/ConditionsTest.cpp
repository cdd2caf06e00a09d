// Conditions of blocks: names, calls and comparisons, as tables of what holds.
#include <map>
#include <set>
#include <sstream>

#include "ScriptCases.h"

namespace kvl {
namespace {

std::vector<TextCase> CasesWith(std::string_view section) {
    std::vector<TextCase> cases;
    for (const TextCase& row : ReadScriptCases("interpreter/Conditions.cases"))
        if (!row[section].empty()) cases.push_back(row);
    return cases;
}

std::string Block(const std::string& condition, const std::string& body) {
    return "$BEGIN IF " + condition + "$" + body + "$END IF " + condition + "$";
}

class Conditions : public testing::TestWithParam<TextCase> {
protected:
    // "yes", "no" or the faults. A "body" has "{}" where the condition stands; what else it writes belongs to the
    // outcome.
    static std::string Outcome(const std::string& condition) {
        ScriptRun run;
        const std::string values = Prepare(run, GetParam());
        const std::string body = GetParam()["body"].empty() ? "{}" : GetParam()["body"];
        const bool succeeded = run.Execute(values + ReplaceAll(body, "{}", Block(condition, "$YES$")));
        if (!succeeded) return run.faults + (Process().stoppedPath == "/home/main.kvl" ? "" : ", stopped elsewhere");
        return run.output.empty() ? "no" : run.output;
    }
};
INSTANTIATE_TEST_SUITE_P(Cases, Conditions, testing::ValuesIn(CasesWith("conditions")), CaseName);

TEST_P(Conditions, Decide) {
    std::istringstream rows(GetParam()["conditions"]);
    std::string outcome;
    for (std::string row; std::getline(rows, row);) {
        const std::string condition = row.substr(row.find(" | ") + 3);
        outcome += Outcome(condition) + " | " + condition + "\n";
    }
    ExpectSection(GetParam(), "conditions", outcome);
}

class Comparisons : public testing::TestWithParam<TextCase> {
protected:
    // How the sides stand to each other by all six operators: "<", "=", ">", "~" for sides that only "!=" joins, "x"
    // for a comparison that is refused.
    static std::string Order(const std::string& left, const std::string& right) {
        static const std::map<std::string, std::string> orders = {
            {"== <= >= ", "="}, {"!= < <= ", "<"}, {"!= > >= ", ">"}, {"!= ", "~"}};
        ScriptRun run;
        std::string body = Prepare(run, GetParam()) + GetParam()["body"] + "$ORDER ::STREAM$";
        for (const std::string comparison : {"==", "!=", "<", "<=", ">", ">="})
            body += Block(left + " " + comparison + " " + right, "$ORDER += \"" + comparison + " \"$");
        if (!run.Execute(body + "$ORDER$")) return run.faults.starts_with("ERR_DECL_SCRIPT_VAR_9 ") ? "x" : run.faults;
        const auto order = orders.find(run.output);
        return order == orders.end() ? run.output : order->second;
    }
};
INSTANTIATE_TEST_SUITE_P(Cases, Comparisons, testing::ValuesIn(CasesWith("comparisons")), CaseName);

// Each line: a left side, how it stands to the right sides behind it. Every left side meets the same right sides.
TEST_P(Comparisons, OrderEachPair) {
    std::istringstream table(GetParam()["comparisons"]);
    std::map<std::string, std::set<std::string>> met;
    for (std::string row, left, expected, right; std::getline(table, row);) {
        std::istringstream words(row);
        for (words >> left >> expected; words >> right; met[left].insert(right))
            EXPECT_EQ(Order(left, right), expected) << left << " " << right;
    }
    for (const auto& [left, rights] : met)
        EXPECT_EQ(rights, met.begin()->second) << left;
}

}  // namespace
}  // namespace kvl
