#pragma once
// The six elementary elements: how each reads its token at the cursor of a window.

#include "typeschema/WeakMatch.h"

namespace kvl {

struct Token {
    bool accepted = false;
    int begin = 0;
    int end = 0;  // behind the token
};

// Reads the token of an element of the given kind (kElementString to kElementWhiteSpace). Accepted: the cursor stands
// behind the token. Refused: the cursor stands where reading left it, behind the byte that ended the token.
Token ReadElement(InputWindow& window, int elementKind);

}  // namespace kvl
