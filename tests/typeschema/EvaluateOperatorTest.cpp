#include <regex>
#include <sstream>

#include "support/CaseFile.h"
#include "support/WrittenBytes.h"
#include "typeschema/CTSEntity.h"
#include "typeschema/OperatorIds.h"
#include "values/TypeIds.h"

namespace kvl {
namespace {

class CountingEntity final : public CTSEntity {
public:
    void ReportDivisionByZero() const override { ++divisions; }
    mutable int divisions = 0;
};

// "?" stands for an operator that there is not.
const std::map<std::string, int> kOperators = {
    {"=", kOperatorAssign},   {"+", kOperatorPlus},   {"-", kOperatorMinus},  {"/", kOperatorDivide},
    {"*", kOperatorMultiply}, {"%", kOperatorModulo}, {"==", kOperatorEqual}, {"<", kOperatorLt},
    {"<=", kOperatorLte},     {">", kOperatorGt},     {">=", kOperatorGte},   {"?", kOperatorGte + 1}};
const std::map<std::string, int> kTypes = {{"STREAM", kTypeStream},
                                           {"STRING", kTypeString},
                                           {"INTEGER", kTypeInteger},
                                           {"FLOAT", kTypeFloat},
                                           {"BOOL", kTypeBool},
                                           {"IDENTIFIER", kTypeIdentifier},
                                           {"WHITESPACE", kTypeWhiteSpace},
                                           {"CONSTANT_INTEGER", kConstantInteger},
                                           {"CONSTANT_FLOAT", kConstantFloat},
                                           {"CONSTANT_BOOL", kConstantBool},
                                           {"KVL:PATTERN", kTypePattern}};

std::string Outcome(const std::smatch& row) {
    const CountingEntity entity;
    const int operatorId = kOperators.at(row[3]);
    const OperatorResult result = EvaluateOperator(BytesOf(row[2].str()), kTypes.at(row[1]), operatorId,
                                                   BytesOf(row[5].str()), kTypes.at(row[4]), entity);
    if (entity.divisions != 0) return result.possible ? "reported, yet possible" : "division by zero";
    if (!result.possible) return "impossible";
    if (operatorId >= kOperatorEqual) return result.truth ? "true" : "false";
    return "|" + std::regex_replace(Written(result.text), std::regex("\n"), "{{0A}}") + "|";
}

class EvaluateOperatorTest : public testing::TestWithParam<TextCase> {};
KVL_INSTANTIATE_CASES(EvaluateOperatorTest, "typeschema/Operators.cases");

TEST_P(EvaluateOperatorTest, Gives) {
    const std::regex form(R"((\S+) \|(.*)\| (\S+) (\S+) \|(.*)\| gives .*)");
    std::istringstream rows(GetParam()["rows"]);
    std::string actual;
    for (std::string row; std::getline(rows, row);) {
        std::smatch parts;
        ASSERT_TRUE(std::regex_match(row, parts, form)) << row;
        actual += row.substr(0, row.find(" gives ")) + " gives " + Outcome(parts) + "\n";
    }
    ExpectSection(GetParam(), "rows", actual);
}

}  // namespace
}  // namespace kvl
