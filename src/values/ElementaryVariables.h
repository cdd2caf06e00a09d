#pragma once
// Scalars held as text, and the literals of a type, whose text is part of the grammar and survives a clear.

#include "values/CVariable.h"

namespace kvl {

class CVariableKVLString final : public CVariableText {
public:
    CVariableKVLString() : CVariableText(kTypeString) {}
};
class CVariableKVLInteger final : public CVariableText {
public:
    CVariableKVLInteger() : CVariableText(kTypeInteger) {}
};
class CVariableKVLFloat final : public CVariableText {
public:
    CVariableKVLFloat() : CVariableText(kTypeFloat) {}
};
class CVariableKVLBool final : public CVariableText {
public:
    CVariableKVLBool() : CVariableText(kTypeBool) {}
};
class CVariableKVLIdentifier final : public CVariableText {
public:
    CVariableKVLIdentifier() : CVariableText(kTypeIdentifier) {}
};
class CVariableKVLWhiteSpace final : public CVariableText {
public:
    CVariableKVLWhiteSpace() : CVariableText(kTypeWhiteSpace) {}
};
class CVariableKVLRecursionIdentifier final : public CVariableText {
public:
    CVariableKVLRecursionIdentifier() : CVariableText(kTypeRecursionId) {}
};
class CVariableKVLStream final : public CVariableText {
public:
    CVariableKVLStream() : CVariableText(kTypeStream) {}
    // Label, "::", type name, a line end, the text, a line end; nothing for a column.
    std::string DumpValue(const LoopStack& loops) const override;
};
class CVariableLiteralWWS final : public CVariableText {
public:
    CVariableLiteralWWS() : CVariableText(kLiteralStrict) {}
    void ClearValue() override {}
};
class CVariableLiteralNWS final : public CVariableText {
public:
    CVariableLiteralNWS() : CVariableText(kLiteralWeak) {}
    void ClearValue() override {}
};

}  // namespace kvl
