#pragma once
// What the tests of the type front end share: a console that keeps its text, type files in the test's own directory,
// and trees of items as text.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "frontend/TypeFrontEnd.h"
#include "support/CaseFile.h"
#include "support/TestPlatform.h"
#include "support/WrittenBytes.h"
#include "text/ProcessState.h"

namespace kvl {

class NoTypes final : public KnownTypes {
public:
    const CTypeSchema* FindLoadedType(std::string_view) const override { return nullptr; }
};

class TypeFrontEndTest : public testing::Test {
protected:
    TypeFrontEndTest() { ResetProcessState(); }

    // A type file at the path "person.txt".
    std::shared_ptr<CTypeSchema> ParseFile(std::string_view text) {
        outside_.memory.Put("person.txt", text);
        return ParseTypeFile(kEntityType, "person.txt");
    }

    std::shared_ptr<CTypeSchema> ParseStream(std::string text) {
        return ParseTypeStream(kEntityType, "S:TYPE", text, MessageContext());
    }

    const std::string& ConsoleText() const { return outside_.console.output; }

    // The message shown last, in short: "ERR_DECL_TYPE_LIT_1 3:7 |line|mark|"; empty if there was none.
    std::string LastMessage() const {
        constexpr std::string_view kHead = "\nERROR: ";
        const std::size_t head = ConsoleText().rfind(kHead);
        if (head == std::string::npos) return "";
        const std::size_t start = head + kHead.size();
        const auto& parameters = Process().vectorMessageParameters;
        return ConsoleText().substr(start, ConsoleText().find('\n', start) - start) + " " +
               parameters[ERRSTR_ENTITYLINENUMBER] + ":" + parameters[ERRSTR_ENTITYLINEPOSITION] + " |" +
               parameters[ERRSTR_ENTITYLINE] + "|" + parameters[ERRSTR_ENTITYLINEPOSITIONMARK] + "|";
    }

    ScopedPlatform outside_;
};

constexpr std::string_view kTypeHeader = "$BEGIN KVL VERSION=\"1.0.0\"$\n";
constexpr std::string_view kTypeFooter = "\n$END KVL VERSION=\"1.0.0\"$";

// A whole type file around declarations, which begin on line 2.
inline std::string TypeFile(std::string_view declarations) {
    return std::string(kTypeHeader).append("$TYPE").append(declarations).append("$").append(kTypeFooter);
}

// All that the parser filled, one line for each item, its children indented. Positions count from behind "$TYPE" of
// TypeFile.
class ItemDump {
public:
    static std::string Of(const CTypeSchema& schema) {
        ItemDump dump;
        for (const DeclaredType& declared : schema.declaredTypes) {
            dump.text_ += "::" + declared.name + " line=" + std::to_string(declared.line);
            dump.AddPlace("at", declared.position, declared.positionText);
            dump.text_ += "\n";
            dump.AddItem(declared.root, 1);
        }
        return dump.text_;
    }

private:
    void AddItem(const TypeItem& item, std::size_t depth) {
        static constexpr const char* kKinds[] = {
            "?", "mark", "strict", "weak", "typed", "reference", "placeholder", "qualified placeholder", "category"};
        text_ += std::string(depth * 2, ' ') + kKinds[item.itemKind] + (item.isKeyword ? " keyword" : "");
        text_ += " line=" + std::to_string(item.line);
        AddPlace("at", item.position, item.positionText);
        AddPlace("name", item.namePosition, item.nameText);
        AddText("elementName", item.elementName);
        AddPlace("type", item.typePosition, item.typeText);
        AddText("typeName", item.typeName);
        AddNumber("elementType", item.elementType);
        AddNumber("categoryType", item.categoryType);
        AddPlace("literal", item.literalPosition, item.literalText);
        AddText("literal", item.literal);
        AddPlace("qualifier", item.qualifierPosition, item.qualifierText);
        AddText("qualifier", item.qualifier);
        AddPlace("reference", item.referencePosition, item.referenceText);
        AddText("reference", item.reference);
        AddPlace("placeholder", item.placeholderPosition, item.placeholderText);
        AddText("placeholder", item.placeholder);
        AddText("subtypeName", item.subtypeName);
        text_ += "\n";
        for (const TypeItem& child : item.children)
            AddItem(child, depth + 1);
    }

    void AddPlace(const char* key, int position, const std::string& text) {
        if (position == -1 && text.empty()) return;
        const int start = static_cast<int>(kTypeHeader.size() + std::string_view("$TYPE").size());
        text_ +=
            std::string(" ") + key + "@" + std::to_string(position == -1 ? -1 : position - start) + "'" + text + "'";
    }
    void AddText(const char* key, const std::string& text) {
        if (!text.empty()) text_ += std::string(" ") + key + "=" + text;
    }
    void AddNumber(const char* key, int number) {
        if (number != 0) AddText(key, std::to_string(number));
    }

    std::string text_;
};

}  // namespace kvl
