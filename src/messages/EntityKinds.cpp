#include "messages/EntityKinds.h"

namespace kvl {
namespace {

struct KindRow {
    int id;
    std::string_view name;
};
// The row of the unknown kind ends the table; its name is for readers only.
constexpr KindRow kKinds[] = {
    {kEntityMainScript, "Main Script"},
    {kEntityType, "Type"},
    {kEntityPattern, "Pattern"},
    {kEntityTypeInstance, "Type Instance"},
    {kEntitySubTypeInstance, "SubType Instance"},
    {kEntityMacroScript, "Macro Script"},
    {kEntityMacroType, "Macro Type"},
    {kEntityMacroPattern, "Macro Pattern"},
    {kEntityUnknown, "unknown"},
};

}  // namespace

std::string_view GetEntityKindName(int id) {
    for (const KindRow* row = kKinds; row->id != kEntityUnknown; ++row) {
        if (row->id == id) return row->name;
    }
    return {};
}

}  // namespace kvl
