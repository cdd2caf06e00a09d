#include <gtest/gtest.h>

#include "typeschema/CTSEntity.h"
#include "typeschema/OperatorIds.h"

namespace kvl {
namespace {

class CountingEntity final : public CTSEntity {
public:
    void ReportDivisionByZero() const override { ++divisions; }
    mutable int divisions = 0;
};

struct OperatorRow {
    const char* name;
    std::string_view left;
    int leftType, operatorId;
    std::string_view right;
    int rightType;
    const char* expected;  // the text, "true", "false", "impossible" or "division by zero"
};

class EvaluateOperatorTest : public testing::TestWithParam<OperatorRow> {};

std::string Show(const OperatorResult& result, const CountingEntity& entity, int operatorId) {
    if (entity.divisions != 0) return result.possible ? "reported, yet possible" : "division by zero";
    if (!result.possible) return "impossible";
    if (operatorId >= kOperatorEqual) return result.truth ? "true" : "false";
    return result.text;
}

TEST_P(EvaluateOperatorTest, Gives) {
    const OperatorRow& row = GetParam();
    const CountingEntity entity;
    const OperatorResult result =
        EvaluateOperator(row.left, row.leftType, row.operatorId, row.right, row.rightType, entity);
    EXPECT_EQ(Show(result, entity, row.operatorId), row.expected);
}

// Which right sides the types take, and in which form; an assignment shows it.
constexpr OperatorRow kConversionRows[] = {
    {"StreamTakesAll", "", kTypeStream, kOperatorAssign, "a b\n", kTypeFloat, "a b\n"},
    {"StringTakesAWord", "", kTypeString, kOperatorAssign, "a-\xC4", kTypeStream, "a-\xC4"},
    {"StringRefusesABlank", "", kTypeString, kOperatorAssign, "a b", kTypeString, "impossible"},
    {"StringRefusesABlankInAComparison", "a", kTypeString, kOperatorEqual, "a ", kTypeString, "impossible"},
    {"IdentifierTakesAName", "", kTypeIdentifier, kOperatorAssign, "_a9", kTypeStream, "_a9"},
    {"IdentifierTakesNothing", "x", kTypeIdentifier, kOperatorAssign, "", kTypeStream, ""},
    {"IdentifierRefusesADigitInFront", "", kTypeIdentifier, kOperatorAssign, "9a", kTypeInteger, "impossible"},
    {"WhiteSpaceTakesInvisible", "", kTypeWhiteSpace, kOperatorAssign, " \t\x80", kTypeStream, " \t\x80"},
    {"WhiteSpaceRefusesVisible", "", kTypeWhiteSpace, kOperatorAssign, " a", kTypeStream, "impossible"},
    {"IntegerKeepsAnInteger", "1", kTypeInteger, kOperatorAssign, "007x", kTypeInteger, "007x"},
    {"IntegerKeepsAConstant", "1", kTypeInteger, kOperatorAssign, "7", kConstantInteger, "7"},
    {"IntegerCutsAFloat", "1", kTypeInteger, kOperatorAssign, "-2.9", kTypeFloat, "-2"},
    {"IntegerCutsAConstantFloat", "1", kTypeInteger, kOperatorAssign, "1e3", kConstantFloat, "1000"},
    {"IntegerOfAFloatOutside", "1", kTypeInteger, kOperatorAssign, "3e9", kTypeFloat, "-2147483648"},
    {"IntegerOfNoNumber", "1", kTypeInteger, kOperatorAssign, "nan", kTypeFloat, "-2147483648"},
    {"IntegerOfFalse", "1", kTypeInteger, kOperatorAssign, "FALSE", kTypeBool, "0"},
    {"IntegerOfAnEmptyBool", "1", kTypeInteger, kOperatorAssign, "", kTypeBool, "0"},
    {"IntegerOfAnyOtherBool", "1", kTypeInteger, kOperatorAssign, "false", kTypeBool, "1"},
    {"IntegerRefusesAConstantBool", "1", kTypeInteger, kOperatorAssign, "TRUE", kConstantBool, "impossible"},
    {"IntegerRefusesAText", "1", kTypeInteger, kOperatorAssign, "7", kTypeString, "impossible"},
    {"FloatOfAnInteger", "1", kTypeFloat, kOperatorAssign, "123456789", kTypeInteger, "1.23457e+08"},
    {"FloatOfAConstantInteger", "1", kTypeFloat, kOperatorAssign, "5", kConstantInteger, "5"},
    {"FloatKeepsAFloat", "1", kTypeFloat, kOperatorAssign, "1.50", kTypeFloat, "1.50"},
    {"FloatRefusesABool", "1", kTypeFloat, kOperatorAssign, "TRUE", kTypeBool, "impossible"},
    {"FloatRefusesAText", "1", kTypeFloat, kOperatorAssign, "1.5", kTypeStream, "impossible"},
    {"BoolOfZero", "", kTypeBool, kOperatorAssign, "00", kTypeInteger, "FALSE"},
    {"BoolOfANumber", "", kTypeBool, kOperatorAssign, "-3", kTypeInteger, "TRUE"},
    {"BoolOfAFloatBelowOne", "", kTypeBool, kOperatorAssign, "0.9", kTypeFloat, "FALSE"},
    {"BoolKeepsABool", "", kTypeBool, kOperatorAssign, "maybe", kTypeBool, "maybe"},
    {"BoolKeepsAConstantBool", "", kTypeBool, kOperatorAssign, "FALSE", kConstantBool, "FALSE"},
    {"BoolOfAConstantZero", "", kTypeBool, kOperatorAssign, "0", kConstantInteger, "TRUE"},
    {"BoolOfAText", "", kTypeBool, kOperatorAssign, "FALSE", kTypeString, "TRUE"},
    {"BoolOfAnEmptyText", "x", kTypeBool, kOperatorAssign, "", kTypeStream, "FALSE"},
    {"NoTypeOnTheLeft", "x", kTypePattern, kOperatorAssign, "y", kTypeStream, "impossible"},
};
INSTANTIATE_TEST_SUITE_P(Conversions, EvaluateOperatorTest, testing::ValuesIn(kConversionRows),
                         [](const auto& row) { return std::string(row.param.name); });

constexpr OperatorRow kTextRows[] = {
    {"Plus", "a", kTypeStream, kOperatorPlus, "b", kTypeStream, "ab"},
    {"PlusOfAString", "a", kTypeString, kOperatorPlus, "b", kTypeString, "ab"},
    {"Minus", "a", kTypeStream, kOperatorMinus, "b", kTypeStream, "impossible"},
    {"Equal", "a", kTypeStream, kOperatorEqual, "a", kTypeStream, "true"},
    {"BytesAreUnsigned", "z", kTypeStream, kOperatorLt, "\xC4", kTypeStream, "true"},
    {"PrefixIsLess", "a", kTypeString, kOperatorLt, "ab", kTypeString, "true"},
    {"NumbersAsTexts", "10", kTypeIdentifier, kOperatorGt, "", kTypeIdentifier, "true"},
    {"LteOfEquals", "a", kTypeStream, kOperatorLte, "a", kTypeStream, "true"},
    {"GteOfALess", "a", kTypeStream, kOperatorGte, "b", kTypeStream, "false"},
    {"BoolHasNoPlus", "TRUE", kTypeBool, kOperatorPlus, "TRUE", kTypeBool, "impossible"},
    {"BoolWithAConstantZero", "TRUE", kTypeBool, kOperatorEqual, "0", kConstantInteger, "true"},
    {"BoolWithAVariableZero", "TRUE", kTypeBool, kOperatorEqual, "0", kTypeInteger, "false"},
    {"UnknownOperator", "a", kTypeStream, 91, "b", kTypeStream, "impossible"},
};
INSTANTIATE_TEST_SUITE_P(Texts, EvaluateOperatorTest, testing::ValuesIn(kTextRows),
                         [](const auto& row) { return std::string(row.param.name); });

constexpr int kInt = kTypeInteger;
constexpr OperatorRow kIntegerRows[] = {
    {"Plus", "2", kInt, kOperatorPlus, "3", kInt, "5"},
    {"PlusWraps", "2147483647", kInt, kOperatorPlus, "1", kInt, "-2147483648"},
    {"MinusWraps", "-2147483648", kInt, kOperatorMinus, "1", kInt, "2147483647"},
    {"MultiplyWraps", "65536", kInt, kOperatorMultiply, "65537", kInt, "65536"},
    {"MultiplyOfTheEnds", "-2147483648", kInt, kOperatorMultiply, "-2147483648", kInt, "0"},
    {"DivideTruncates", "7", kInt, kOperatorDivide, "2", kInt, "3"},
    {"DivideTruncatesToZero", "-7", kInt, kOperatorDivide, "2", kInt, "-3"},
    {"DivideWraps", "-2147483648", kInt, kOperatorDivide, "-1", kInt, "-2147483648"},
    {"DivideByZero", "7", kInt, kOperatorDivide, "0", kInt, "division by zero"},
    {"DivideByAFractionBelowOne", "7", kInt, kOperatorDivide, "0.5", kTypeFloat, "division by zero"},
    {"Modulo", "7", kInt, kOperatorModulo, "4", kInt, "3"},
    {"ModuloOfANegative", "-7", kInt, kOperatorModulo, "4", kInt, "-3"},
    {"ModuloOfTheEnd", "-2147483648", kInt, kOperatorModulo, "-1", kInt, "0"},
    {"ModuloByZero", "7", kInt, kOperatorModulo, "x", kInt, "division by zero"},
    {"LowBitsCount", "4294967297", kInt, kOperatorPlus, "0", kInt, "1"},
    {"LeftWithoutDigits", "x", kInt, kOperatorPlus, "3", kInt, "3"},
    {"EqualAsNumbers", "007", kInt, kOperatorEqual, "7", kInt, "true"},
    {"LtOfTheEnds", "-2147483648", kInt, kOperatorLt, "2147483647", kInt, "true"},
    {"GteOfTheEnds", "2147483647", kInt, kOperatorGte, "-2147483648", kInt, "true"},
    {"Gt", "2", kInt, kOperatorGt, "2", kInt, "false"},
    {"Lte", "3", kInt, kOperatorLte, "2", kInt, "false"},
};
INSTANTIATE_TEST_SUITE_P(Integers, EvaluateOperatorTest, testing::ValuesIn(kIntegerRows),
                         [](const auto& row) { return std::string(row.param.name); });

constexpr OperatorRow kFloatRows[] = {
    {"Plus", "0.1", kTypeFloat, kOperatorPlus, "0.2", kTypeFloat, "0.3"},
    {"Minus", "1", kTypeFloat, kOperatorMinus, "3", kInt, "-2"},
    {"Multiply", "1e20", kTypeFloat, kOperatorMultiply, "1e20", kTypeFloat, "inf"},
    {"Divide", "1", kTypeFloat, kOperatorDivide, "3", kTypeFloat, "0.333333"},
    {"DivideByZero", "1", kTypeFloat, kOperatorDivide, "-0.0", kTypeFloat, "division by zero"},
    {"ModuloIsRefusedInSilence", "7", kTypeFloat, kOperatorModulo, "0", kTypeFloat, "impossible"},
    {"Equal", "-0.0", kTypeFloat, kOperatorEqual, "0", kTypeFloat, "true"},
    {"DifferenceBelowSinglePrecision", "1e-60", kTypeFloat, kOperatorEqual, "0", kTypeFloat, "true"},
    {"Lt", "1.5", kTypeFloat, kOperatorLt, "2", kConstantInteger, "true"},
    {"NoNumberIsNotEqual", "nan", kTypeFloat, kOperatorEqual, "nan", kTypeFloat, "false"},
    {"NoNumberIsNotLess", "nan", kTypeFloat, kOperatorLte, "1", kTypeFloat, "false"},
};
INSTANTIATE_TEST_SUITE_P(Floats, EvaluateOperatorTest, testing::ValuesIn(kFloatRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kvl
