#pragma once
// Lets the memory of one run be used up, so that a fuzz target's runs are short whatever their scripts do: a script may
// double a text in a loop, or call itself. What a run asks for is counted, freed or not; past the budget one request
// fails, as it would on a machine that has no more. A program that is linked with it has its operator new.

#include <cstddef>

namespace kvl {

// From now on, until a request has failed.
void SetAllocationBudget(std::size_t bytes, std::size_t requests);
void ClearAllocationBudget();

}  // namespace kvl
