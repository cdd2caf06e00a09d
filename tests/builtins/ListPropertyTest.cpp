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

struct Op {
    enum Kind {
        kLoop,
        kIf,
        kShow,
        kSeparator,
        kSet,
        kAdd,
        kTake,
        kAssign,
        kFromInstance,
        kToInstance,
        kEmpty,
        kReverse,
        kSort,
        kUnify,
    } kind = kLoop;
    List* list = nullptr;
    std::size_t column = 0;
    List* other = nullptr;
    std::size_t otherColumn = 0;
    Mode mode = Mode::Single;
    std::string text;
    std::vector<Op> body;

    const List::Column& Column() const { return list->columns[column]; }
};

// A script on these lists, and what it must come to.
class Script : public ListWorld {
public:
    explicit Script(unsigned seed) : ListWorld(seed) {
        program_ = MakeBody(0, 5);
        isShort_ = RunAll(program_);
    }

    bool IsShort() const { return isShort_; }
    const std::string& Output() const { return output_; }
    std::string Text() const { return Declarations() + RenderAll(program_); }

private:
    // --- the program ---

    bool IsLooped(const List* list) const {
        for (const List* looped : looped_)
            if (looped == list) return true;
        return false;
    }

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
    bool ChooseColumn(Op& op) {
        op.list = ChooseList([this](List& list) { return IsLooped(&list); });
        return op.list && ChooseText(*op.list, op.column);
    }
    bool ChooseText(const List& list, std::size_t& column) {
        do {
            column = static_cast<std::size_t>(Below(static_cast<int>(list.columns.size())));
        } while (list.columns[column].nested);
        return true;
    }

    std::vector<Op> MakeBody(int depth, int count) {
        std::vector<Op> ops;
        for (int i = 0; i < count; ++i) {
            Op op;
            op.kind = static_cast<Op::Kind>(Below(Op::kUnify + 1));
            if (depth == 0 && Below(2) == 0) op.kind = Op::kLoop;
            if (Complete(op, depth)) ops.push_back(std::move(op));
        }
        return ops;
    }

    // False where the lists in reach allow no such operation.
    bool Complete(Op& op, int depth) {
        switch (op.kind) {
            case Op::kLoop:
                return depth < 4 && CompleteLoop(op, depth);
            case Op::kIf:
                if (depth >= 4 || !ChooseColumn(op) || op.Column().isNumber) return false;
                op.text = Choice(kWords);
                op.body = MakeBody(depth + 1, 1 + Below(2));
                return true;
            case Op::kShow:
                return ChooseColumn(op);
            case Op::kSeparator:
                return depth > 0;
            case Op::kSet:
            case Op::kAdd:
                op.list = ChooseList([this](List& list) { return IsLooped(&list) || Below(8) == 0; });
                if (!op.list) return false;
                ChooseText(*op.list, op.column);
                op.text = op.Column().isNumber ? Choice(kNumbers) : Choice(kWords);
                return true;
            case Op::kTake: {
                Op from = op;
                if (!ChooseColumn(from) || !ChooseColumn(op)) return false;
                op.other = from.list;
                op.otherColumn = from.column;
                return op.Column().isNumber == from.Column().isNumber;
            }
            case Op::kAssign:
                op.list = ChooseList([](List&) { return true; });
                op.other = ChooseList([&](List& list) { return literal::SameShape(*op.list, list); });
                return true;
            case Op::kFromInstance:
            case Op::kToInstance:
                op.list = ChooseList([](List& list) { return list.columns.size() == 4; });
                return true;
            case Op::kEmpty:
                if (Below(3) != 0) return false;
                [[fallthrough]];
            case Op::kReverse:
                op.list = ChooseReachable();
                return true;
            case Op::kSort:
            case Op::kUnify:
                op.list = ChooseReachable();
                return ChooseText(*op.list, op.column);
        }
        return false;
    }

    bool CompleteLoop(Op& op, int depth) {
        op.list = ChooseReachable();
        op.mode = static_cast<Mode>(Below(4));
        looped_.push_back(op.list);
        op.other = op.mode == Mode::Single ? nullptr : ChooseReachable();
        if (op.other) looped_.push_back(op.other);
        if (op.other != op.list) op.body = MakeBody(depth + 1, 1 + Below(4));
        looped_.resize(looped_.size() - (op.other ? 2 : 1));
        return op.other != op.list;
    }

    // --- as text ---

    static std::string RenderAll(const std::vector<Op>& ops) {
        std::string text;
        for (const Op& op : ops)
            text += Render(op) + "\n";
        return text;
    }
    static std::string Block(const std::string& head, const std::vector<Op>& body) {
        return "$BEGIN " + head + "$\n" + RenderAll(body) + "$END " + head + "$";
    }
    static std::string Literal(const Op& op) { return op.Column().isNumber ? op.text : "\"" + op.text + "\""; }

    static std::string Render(const Op& op) {
        constexpr const char* kModes[] = {"", ", ", " CHANGE ", " EXTEND "};
        constexpr const char* kMacros[] = {"EMPTY", "REVERSE", "SORT", "UNIFY"};
        const std::string list = op.list ? op.list->label : "";
        const std::string column = op.kind != Op::kSeparator ? op.Column().label : "";
        const std::string other = op.other ? op.other->label : "";
        switch (op.kind) {
            case Op::kLoop:
                return Block("ALL " + list + kModes[static_cast<int>(op.mode)] + other, op.body);
            case Op::kIf:
                return Block("IF " + column + " == " + Literal(op), op.body);
            case Op::kShow:
                return "$" + column + "$";
            case Op::kSeparator:
                return "$BEGIN SEPARATOR$$COMMA$$END SEPARATOR$";
            case Op::kSet:
            case Op::kAdd:
                return "$" + column + (op.kind == Op::kSet ? " = " : " += ") + Literal(op) + "$";
            case Op::kTake:
                return "$" + column + " = " + op.other->columns[op.otherColumn].label + "$";
            case Op::kAssign:
                return "$" + list + " = " + other + "$";
            case Op::kFromInstance:
                return "$" + list + " = I$";
            case Op::kToInstance:
                return "$I = " + list + "$";
            default:
                return std::string("$KVL:LIST:") + kMacros[op.kind - Op::kEmpty] + "(" + list +
                       (op.kind >= Op::kSort ? ", " + column : "") + ")$";
        }
    }

    // --- on the plain lists ---

    bool RunAll(const std::vector<Op>& ops) {
        for (const Op& op : ops)
            if (++steps_ > kStepsPerScript || !Run(op) || HasMany()) return false;
        return true;
    }
    bool HasMany() const {
        std::size_t count = 0;
        for (const List& list : lists_)
            count += list.records.size();
        return count > kRecordsPerScript;
    }

    bool Run(const Op& op);

    literal::Lists model_;
    std::vector<List*> looped_;
    std::vector<Op> program_;
    std::string output_;
    int steps_ = 0;
    bool isShort_ = false;
};

// False when the script takes too long.
bool Script::Run(const Op& op) {
    switch (op.kind) {
        case Op::kLoop: {
            Loop& loop = model_.loops.emplace_back(Loop{op.mode, {op.list, {}, {}}, {op.other, {}, {}}});
            for (bool more = model_.First(loop); more; more = model_.Next(loop)) {
                if (!RunAll(op.body)) return false;
                model_.StoreBack(loop);
            }
            model_.loops.pop_back();
            return true;
        }
        case Op::kIf:
            return model_.Read(*op.list, op.column) != op.text || RunAll(op.body);
        case Op::kShow: {
            const std::string& text = model_.Read(*op.list, op.column);
            output_ += op.Column().isNumber && text.empty() ? "0" : text;
            return true;
        }
        case Op::kSeparator:
            if (!model_.loops.back().first.last && !model_.loops.back().second.last) output_ += ",";
            return true;
        case Op::kSet:
        case Op::kTake: {
            model_.MarkSecond(op.list);
            model_.ReadForWriting(*op.list, op.column);
            model_.Write(*op.list, op.column, op.other ? model_.Read(*op.other, op.otherColumn) : op.text);
            return true;
        }
        case Op::kAdd: {
            const std::string old = model_.ReadForWriting(*op.list, op.column);
            const bool isNumber = op.Column().isNumber;
            model_.Write(*op.list, op.column,
                         isNumber ? std::to_string(std::atoi(old.c_str()) + std::stoi(op.text)) : old + op.text);
            return true;
        }
        case Op::kAssign:
            model_.MarkSecond(op.list->isVariable ? op.list : op.list->parent);
            return model_.Assign(*op.list, *op.other);  // the generator pairs lists of one shape
        case Op::kFromInstance:
            model_.MarkSecond(op.list->isVariable ? op.list : op.list->parent);
            model_.Assign(*op.list, instance_);
            return true;
        case Op::kToInstance:
            model_.Assign(instance_, *op.list);
            return true;
        case Op::kEmpty:
            model_.Empty(*op.list);
            return true;
        case Op::kReverse:
            model_.Reverse(*op.list);
            return true;
        case Op::kSort:
            model_.Sort(*op.list, op.column);
            return true;
        case Op::kUnify:
            model_.Unify(*op.list, op.column);
            return true;
    }
    return false;
}

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
