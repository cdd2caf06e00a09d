#pragma once
// The ids of the eleven operators, as commands carry them.

namespace kvl {

enum OperatorId : int {
    kOperatorAssign = 80,
    kOperatorPlus = 81,
    kOperatorMinus = 82,
    kOperatorDivide = 83,
    kOperatorMultiply = 84,
    kOperatorModulo = 85,
    kOperatorEqual = 86,
    kOperatorLt = 87,
    kOperatorLte = 88,
    kOperatorGt = 89,
    kOperatorGte = 90,
};

}  // namespace kvl
