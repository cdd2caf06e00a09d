// Operators on values that are held as texts. The type of the left side decides: which right sides it takes, how their
// text is converted, and which operators it knows. What a type does not know is no fault here; the caller tells the
// user.
#include <cstdint>
#include <optional>

#include "text/ByteClass.h"
#include "text/Numbers.h"
#include "typeschema/CTSEntity.h"
#include "typeschema/OperatorIds.h"

namespace kvl {
namespace {

constexpr std::string_view kTrue = "TRUE", kFalse = "FALSE";

std::string TruthText(bool truth) {
    return std::string(truth ? kTrue : kFalse);
}

OperatorResult TextResult(std::string text) {
    return {true, false, std::move(text)};
}

// --- the right side in the form of the left side's type; nothing where it does not fit ---

using Converted = std::optional<std::string>;

Converted AcceptIf(bool accepted, std::string_view right) {
    return accepted ? Converted(right) : std::nullopt;
}

bool HasNoInvisible(std::string_view text) {
    for (char c : text)
        if (IsInvisible(c)) return false;
    return true;
}

Converted ToStream(std::string_view right, int /*rightType*/) {
    return std::string(right);
}

Converted ToString(std::string_view right, int /*rightType*/) {
    return AcceptIf(HasNoInvisible(right), right);
}

Converted ToIdentifier(std::string_view right, int /*rightType*/) {
    return AcceptIf(right.empty() || IsIdentifier(right), right);
}

Converted ToWhiteSpace(std::string_view right, int /*rightType*/) {
    return AcceptIf(IsAllInvisible(right), right);
}

Converted ToInteger(std::string_view right, int rightType) {
    switch (rightType) {
        case kTypeInteger:
        case kConstantInteger:
            return std::string(right);
        case kTypeFloat:
        case kConstantFloat:
            return IntegerText(TruncateToInteger(ReadFloat(right)));
        case kTypeBool:
            return std::string(right.empty() || right == kFalse ? "0" : "1");
        default:
            return std::nullopt;
    }
}

Converted ToFloat(std::string_view right, int rightType) {
    switch (rightType) {
        case kTypeInteger:
        case kConstantInteger:
            return FloatText(static_cast<float>(ReadFloat(right)));
        case kTypeFloat:
        case kConstantFloat:
            return std::string(right);
        default:
            return std::nullopt;
    }
}

// Only a variable is read as a number: the constant 0 is a text that is not empty, hence TRUE.
Converted ToBool(std::string_view right, int rightType) {
    switch (rightType) {
        case kTypeInteger:
            return TruthText(ReadInteger(right) != 0);
        case kTypeFloat:
            return TruthText(TruncateToInteger(ReadFloat(right)) != 0);
        case kTypeBool:
        case kConstantBool:
            return std::string(right);
        default:
            return TruthText(!right.empty());
    }
}

// --- the groups of operators ---

// `sign` is below, at or above 0 as the left side is to the right; no number for what cannot be compared.
template <class Sign>
OperatorResult Compare(int operatorId, Sign sign) {
    switch (operatorId) {
        case kOperatorEqual:
            return {true, sign == 0, {}};
        case kOperatorLt:
            return {true, sign < 0, {}};
        case kOperatorLte:
            return {true, sign <= 0, {}};
        case kOperatorGt:
            return {true, sign > 0, {}};
        case kOperatorGte:
            return {true, sign >= 0, {}};
        default:
            return {};
    }
}

OperatorResult TextOperator(std::string_view left, int operatorId, std::string&& right, const CTSEntity& /*entity*/) {
    switch (operatorId) {
        case kOperatorAssign:
            return TextResult(std::move(right));
        case kOperatorPlus:
            return TextResult(std::string(left).append(right));
        default:
            return Compare(operatorId, left.compare(right));
    }
}

OperatorResult BoolOperator(std::string_view left, int operatorId, std::string&& right, const CTSEntity& entity) {
    return operatorId == kOperatorPlus ? OperatorResult() : TextOperator(left, operatorId, std::move(right), entity);
}

OperatorResult DivisionByZero(const CTSEntity& entity) {
    entity.ReportDivisionByZero();
    return {};
}

// The low 32 bits: integers wrap around.
OperatorResult Wrapped(std::int64_t value) {
    return TextResult(IntegerText(static_cast<std::int32_t>(static_cast<std::uint32_t>(value))));
}

// Of two 32-bit numbers, so that nothing overflows in 64 bits.
OperatorResult IntegerOperator(std::string_view left, int operatorId, std::string&& right, const CTSEntity& entity) {
    const std::int64_t a = ReadInteger(left);
    const std::int64_t b = ReadInteger(right);
    switch (operatorId) {
        case kOperatorAssign:
            return TextResult(std::move(right));
        case kOperatorPlus:
            return Wrapped(a + b);
        case kOperatorMinus:
            return Wrapped(a - b);
        case kOperatorMultiply:
            return Wrapped(a * b);
        case kOperatorDivide:
            return b == 0 ? DivisionByZero(entity) : Wrapped(a / b);
        case kOperatorModulo:
            return b == 0 ? DivisionByZero(entity) : Wrapped(a % b);
        default:
            return Compare(operatorId, a - b);
    }
}

// Computed in double precision, kept in single precision.
OperatorResult FloatOperator(std::string_view left, int operatorId, std::string&& right, const CTSEntity& entity) {
    const double a = ReadFloat(left);
    const double b = ReadFloat(right);
    const auto narrowed = [](double value) { return TextResult(FloatText(static_cast<float>(value))); };
    switch (operatorId) {
        case kOperatorAssign:
            return TextResult(std::move(right));
        case kOperatorPlus:
            return narrowed(a + b);
        case kOperatorMinus:
            return narrowed(a - b);
        case kOperatorMultiply:
            return narrowed(a * b);
        case kOperatorDivide:
            return b == 0 ? DivisionByZero(entity) : narrowed(a / b);
        default:
            return Compare(operatorId, static_cast<float>(a - b));
    }
}

struct LeftTypeRow {
    int leftType;
    Converted (*convert)(std::string_view right, int rightType);
    OperatorResult (*evaluate)(std::string_view left, int operatorId, std::string&& right, const CTSEntity& entity);
};
constexpr LeftTypeRow kLeftTypes[] = {
    {kTypeStream, ToStream, TextOperator},
    {kTypeString, ToString, TextOperator},
    {kTypeInteger, ToInteger, IntegerOperator},
    {kTypeFloat, ToFloat, FloatOperator},
    {kTypeBool, ToBool, BoolOperator},
    {kTypeIdentifier, ToIdentifier, TextOperator},
    {kTypeWhiteSpace, ToWhiteSpace, TextOperator},
};

}  // namespace

OperatorResult EvaluateOperator(std::string_view left, int leftType, int operatorId, std::string_view right,
                                int rightType, const CTSEntity& entity) {
    for (const LeftTypeRow& row : kLeftTypes) {
        if (row.leftType != leftType) continue;
        Converted converted = row.convert(right, rightType);
        return converted ? row.evaluate(left, operatorId, std::move(*converted), entity) : OperatorResult();
    }
    return {};
}

}  // namespace kvl
