// Random small scripts that loop over lists, write to them, assign and reorder them, run by the system and by plain
// ordered maps: afterwards both must have written the same text and hold the same records under the same keys.
//
// KVL_LIST_SCRIPTS sets the number of scripts, KVL_LIST_SEED the first seed.

#include <algorithm>
#include <cstdlib>
#include <functional>

#include "ListWorld.h"
#include "StaticMacroRun.h"

namespace kvl {
namespace {

constexpr int kScripts = 3000;
constexpr int kStepsPerScript = 400;  // longer ones, those without end among them, are left out
constexpr std::size_t kRecordsPerScript = 300;

// A command, or several: as text, and as what it does to the plain lists. That is false when it takes too long.
struct Step {
    std::string text;
    std::function<bool()> run;
};

// A script on these lists, and what it must come to.
class Script : public ListWorld {
public:
    explicit Script(unsigned seed) : ListWorld(seed) {
        program_ = MakeBody(0, 5);
        isShort_ = program_.run();
    }
    Script(const Script&) = delete;  // the steps hold the script
    Script& operator=(const Script&) = delete;

    bool IsShort() const { return isShort_; }
    const std::string& Output() const { return output_; }
    std::string Text() const { return Declarations() + program_.text; }

private:
    // A column of texts or numbers.
    struct Place {
        List* list = nullptr;
        std::size_t column = 0;

        const List::Column& Column() const { return list->columns[column]; }
    };

    bool IsLooped(const List* list) const { return std::find(looped_.begin(), looped_.end(), list) != looped_.end(); }

    List* ChooseList(const std::function<bool(List&)>& fits) {
        std::vector<List*> candidates;
        for (List& list : lists_)
            if (fits(list)) candidates.push_back(&list);
        return candidates.empty() ? nullptr
                                  : candidates[static_cast<std::size_t>(Below(static_cast<int>(candidates.size())))];
    }
    List* ChooseReachable() {
        return ChooseList([this](List& list) { return !list.parent || IsLooped(list.parent); });
    }
    Place ChoosePlace(List* list) {
        Place place{list};
        do {
            place.column = static_cast<std::size_t>(Below(static_cast<int>(list->columns.size())));
        } while (place.Column().nested);
        return place;
    }
    // No list where no loop runs.
    Place ChooseLoopedPlace() {
        List* list = ChooseList([this](List& each) { return IsLooped(&each); });
        return list ? ChoosePlace(list) : Place();
    }

    Step MakeBody(int depth, int count) {
        std::vector<std::function<bool()>> runs;
        Step body;
        for (int i = 0; i < count; ++i) {
            const Step step = depth == 0 && Below(2) == 0 ? MakeLoop(depth) : MakeStep(Below(14), depth);
            if (!step.run) continue;
            body.text += step.text + "\n";
            runs.push_back(step.run);
        }
        body.run = [this, runs] {
            return std::all_of(runs.begin(), runs.end(),
                               [this](const auto& run) { return ++steps_ <= kStepsPerScript && run() && !HasMany(); });
        };
        return body;
    }

    bool HasMany() const {
        std::size_t count = 0;
        for (const List& list : lists_)
            count += list.records.size();
        return count > kRecordsPerScript;
    }

    // Nothing to run where the lists in reach allow no such command.
    Step MakeStep(int kind, int depth) {
        switch (kind) {
            case 0:
                return MakeLoop(depth);
            case 1:
                return MakeCondition(depth);
            case 2:
                return MakeShow();
            case 3:
                if (depth == 0) return {};
                return {"$BEGIN SEPARATOR$$COMMA$$END SEPARATOR$", [this] {
                            const Loop& loop = model_.loops.back();
                            if (!loop.first.last && !loop.second.last) output_ += ",";
                            return true;
                        }};
            case 4:
            case 5:
                return MakeWrite(kind == 5);
            case 6:
                return MakeTake();
            case 7:
            case 8:
            case 9:
                return MakeAssignment(kind);
            default:
                return kind == 10 && Below(3) != 0 ? Step() : MakeMacro(kind - 10);
        }
    }

    Step MakeLoop(int depth) {
        constexpr const char* kModes[] = {"", ", ", " CHANGE ", " EXTEND "};
        if (depth >= 4) return {};
        List* first = ChooseReachable();
        const auto mode = static_cast<Mode>(Below(4));
        looped_.push_back(first);
        List* second = mode == Mode::Single ? nullptr : ChooseReachable();
        looped_.push_back(second);
        const Step body = second != first ? MakeBody(depth + 1, 1 + Below(4)) : Step();
        looped_.resize(looped_.size() - 2);
        if (second == first) return {};
        const std::string head = "ALL " + first->label + kModes[static_cast<int>(mode)] + (second ? second->label : "");
        return {Block(head, body), [=, this] {
                    Loop& loop = model_.loops.emplace_back(Loop{mode, {first, {}, {}}, {second, {}, {}}});
                    for (bool more = model_.First(loop); more; more = model_.Next(loop)) {
                        if (!body.run()) return false;
                        model_.StoreBack(loop);
                    }
                    model_.loops.pop_back();
                    return true;
                }};
    }

    Step MakeCondition(int depth) {
        const Place at = ChooseLoopedPlace();
        if (depth >= 4 || !at.list || at.Column().isNumber) return {};
        const std::string text = Choice(kWords);
        const Step body = MakeBody(depth + 1, 1 + Below(2));
        return {Block("IF " + at.Column().label + " == " + Literal(at, text), body),
                [=, this] { return model_.Read(*at.list, at.column) != text || body.run(); }};
    }

    Step MakeShow() {
        const Place at = ChooseLoopedPlace();
        if (!at.list) return {};
        return {"$" + at.Column().label + "$", [=, this] {
                    const std::string& text = model_.Read(*at.list, at.column);
                    output_ += at.Column().isNumber && text.empty() ? "0" : text;
                    return true;
                }};
    }

    Step MakeWrite(bool adds) {
        List* list = ChooseList([this](List& each) { return IsLooped(&each) || Below(8) == 0; });
        if (!list) return {};
        const Place to = ChoosePlace(list);
        const bool isNumber = to.Column().isNumber;
        const std::string text = isNumber ? Choice(kNumbers) : Choice(kWords);
        return {"$" + to.Column().label + (adds ? " += " : " = ") + Literal(to, text) + "$", [=, this] {
                    if (!adds) model_.MarkSecond(to.list);
                    const std::string old = model_.ReadForWriting(*to.list, to.column);
                    const std::string sum =
                        isNumber ? std::to_string(std::atoi(old.c_str()) + std::stoi(text)) : old + text;
                    model_.Write(*to.list, to.column, adds ? sum : text);
                    return true;
                }};
    }

    Step MakeTake() {
        const Place from = ChooseLoopedPlace(), to = ChooseLoopedPlace();
        if (!from.list || from.Column().isNumber != to.Column().isNumber) return {};
        return {"$" + to.Column().label + " = " + from.Column().label + "$", [=, this] {
                    model_.MarkSecond(to.list);
                    model_.ReadForWriting(*to.list, to.column);
                    model_.Write(*to.list, to.column, model_.Read(*from.list, from.column));
                    return true;
                }};
    }

    // 7: of a list of the same shape; 8: of the instance; 9: to the instance.
    Step MakeAssignment(int kind) {
        List* list = ChooseList([kind](List& each) { return kind == 7 || each.columns.size() == 4; });
        List* marked = list->isVariable ? list : list->parent;
        if (kind == 9) {
            return {"$I = " + list->label + "$", [=, this] { return model_.Assign(instance_, *list), true; }};
        }
        List* other = ChooseList([&](List& each) { return literal::SameShape(*list, each); });
        return {"$" + list->label + " = " + (kind == 7 ? other->label : "I") + "$", [=, this] {
                    model_.MarkSecond(marked);
                    if (kind == 7) return model_.Assign(*list, *other);
                    model_.Assign(*list, instance_);
                    return true;
                }};
    }

    Step MakeMacro(int macro) {
        constexpr const char* kMacros[] = {"EMPTY(", "REVERSE(", "SORT(", "UNIFY("};
        List* list = ChooseReachable();
        const Place by = ChoosePlace(list);
        const std::string arguments = list->label + (macro >= 2 ? ", " + by.Column().label : "") + ")$";
        return {std::string("$KVL:LIST:") + kMacros[macro] + arguments, [=, this] {
                    if (macro == 0) model_.Empty(*list);
                    if (macro == 1) model_.Reverse(*list);
                    if (macro == 2) model_.Sort(*list, by.column);
                    if (macro == 3) model_.Unify(*list, by.column);
                    return true;
                }};
    }

    static std::string Block(const std::string& head, const Step& body) {
        return "$BEGIN " + head + "$\n" + body.text + "$END " + head + "$";
    }
    static std::string Literal(const Place& at, const std::string& text) {
        return at.Column().isNumber ? text : "\"" + text + "\"";
    }

    literal::Lists model_;
    std::vector<List*> looped_;
    Step program_;
    std::string output_;
    int steps_ = 0;
    bool isShort_ = false;
};

std::string RecordsOf(const CVariableKVLCategoryList& list) {
    std::string text;
    const RecordStore& records = list.Records();
    for (RecordStore::Position p = records.Begin(); p != records.End(); p = records.Next(p)) {
        for (const int number : records.PathAt(p))
            text += std::to_string(number) + ".";
        for (std::size_t i = 0; i < list.Columns().size(); ++i)
            if (!list.NestedList(i)) text += " " + std::string(records.At(p).Get(static_cast<int>(i)));
        text += "; ";
    }
    return text;
}

void ExpectSame(const Script& script, unsigned seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    StaticMacroRun run;
    for (const auto& [name, text] : script.Types())
        run.AddType(name, text);
    EXPECT_TRUE(run.Execute(script.Text())) << run.outside.console.output;
    EXPECT_EQ(run.output, script.Output());
    std::map<std::string, std::string> records;
    for (const List& list : script.AllLists()) {
        const std::string text = RecordsOf(*FindListOf(*run.root->variableTable.Find(list.label)));
        if (!text.empty()) records[list.label] = text;
    }
    EXPECT_EQ(records, script.Records());
    for (std::size_t i = 0; i < script.TheInstance().elements.size(); ++i) {
        const std::string& label = script.TheInstance().elements[i].label;
        EXPECT_EQ(run.root->variableTable.Find(label)->GetText(), script.TheInstance().texts[i]) << label;
    }
    if (testing::Test::HasFailure()) ADD_FAILURE() << script.Text();
}

unsigned FromEnvironment(const char* name, unsigned standard) {
    const char* text = std::getenv(name);
    return text ? static_cast<unsigned>(std::atoi(text)) : standard;
}

TEST(ListProperty, ScriptsComeToWhatPlainMapsComeTo) {
    const unsigned count = FromEnvironment("KVL_LIST_SCRIPTS", kScripts);
    const unsigned first = FromEnvironment("KVL_LIST_SEED", 1);
    unsigned ran = 0;
    for (unsigned seed = first; seed < first + count && !HasFailure(); ++seed) {
        const Script script(seed);
        if (!script.IsShort()) continue;
        ++ran;
        ExpectSame(script, seed);
    }
    EXPECT_GT(ran, count / 2);
}

}  // namespace
}  // namespace kvl
