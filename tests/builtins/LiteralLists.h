#pragma once
// Lists as plain ordered maps from key to record, with loops that copy each record they stand on: what the lists of the
// system must come to, by the shortest way and at any cost.

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <deque>
#include <map>
#include <string>
#include <vector>

namespace kvl::literal {

using Path = std::vector<int>;
using Row = std::vector<std::string>;  // one text for each column; empty for a nested list

struct List {
    struct Column {
        std::string label;
        List* nested = nullptr;
        bool isNumber = false;
    };
    std::string label;
    List* parent = nullptr;
    bool isVariable = false;      // the list is an instance's root: its variable stands for a column of it, too
    std::vector<Column> columns;  // in order of their labels
    std::map<Path, Row> records;
    bool dirty = false;
};

// What an instance of a type without root list holds, in order of the labels.
struct Instance {
    std::string label;
    std::vector<List::Column> elements;
    Row texts;
};

// The numbers of columns are equal, and the first nested lists of both have the same shape.
inline bool SameShape(const List& a, const List& b) {
    if (a.columns.size() != b.columns.size()) return false;
    for (std::size_t i = 0; i < a.columns.size(); ++i) {
        if (!a.columns[i].nested) continue;
        return b.columns[i].nested && SameShape(*a.columns[i].nested, *b.columns[i].nested);
    }
    return true;
}

enum class Mode { Single, Read, Change, Extend };

struct Cursor {
    List* list = nullptr;
    Path key;
    Row row;
    bool last = false, notStarted = true;
};

struct Loop {
    Mode mode;
    Cursor first, second;
    bool ended = false, secondEnded = false;

    bool Uses(const List* list) const { return first.list == list || second.list == list; }
    Cursor& On(const List* list) { return first.list == list ? first : second; }
};

inline bool IsChild(const Path& key, const Path& parent) {
    return key.size() > parent.size() && std::equal(parent.begin(), parent.end(), key.begin());
}

inline void SetDirty(List* list, bool dirty) {
    list->dirty = dirty;
    if (dirty && list->parent) SetDirty(list->parent, true);
}

class Lists {
public:
    std::deque<Loop> loops;  // innermost last

    // Of a record that the input parser adds.
    static Path NewKey(const List& list) {
        Path key = list.parent ? NewKey(*list.parent) : Path();
        key.push_back(static_cast<int>(list.records.size()));
        return key;
    }

    // --- loops ---
    Loop* FindLoop(const List* list) {
        for (std::size_t i = loops.size(); list && i-- > 0;)
            if (loops[i].Uses(list)) return &loops[i];
        return nullptr;
    }

    // False when there is no pass.
    bool First(Loop& loop) {
        if (loop.second.list) SetDirty(loop.second.list, false);
        return Next(loop);
    }

    bool Next(Loop& loop) { return Move(loop, loop.first) && (loop.mode == Mode::Single || MoveSecond(loop)); }

    void StoreBack(Loop& loop) {
        loop.first.list->records[loop.first.key] = loop.first.row;
        if (loop.mode == Mode::Single) return;
        const bool isFresh = loop.mode == Mode::Extend || loop.secondEnded;
        if (!isFresh || loop.second.list->dirty) loop.second.list->records[loop.second.key] = loop.second.row;
        if (loop.mode != Mode::Read) loop.second.list->dirty = false;
    }

    // --- columns and their values ---
    const std::string& Read(const List& list, std::size_t column) { return FindLoop(&list)->On(&list).row[column]; }
    // What "=" does to the second list of a loop before it writes; `left` is the list or the list of the column.
    void MarkSecond(List* left) {
        Loop* loop = FindLoop(left);
        if (loop && loop->second.list == left) SetDirty(left, true);
    }

    // The text in front of an operator; a record is made where no loop runs.
    std::string ReadForWriting(List& list, std::size_t column) {
        if (FindLoop(&list)) return Read(list, column);
        AppendEmpty(list);
        return {};
    }

    void Write(List& list, std::size_t column, const std::string& text) {
        Loop* innermost = FindLoop(&list);
        if (!innermost) {
            list.records.rbegin()->second[column] = text;
            return;
        }
        const Path key = innermost->On(&list).key;
        innermost->On(&list).row[column] = text;
        if (!list.dirty) list.records[key] = innermost->On(&list).row;
        for (Loop& loop : loops) {
            if (!loop.Uses(&list) || loop.On(&list).key != key) continue;
            loop.On(&list).row[column] = text;
            const auto record = list.records.find(key);
            const bool writesList = &loop.On(&list) == &loop.first || !list.dirty;
            if (writesList && record != list.records.end()) record->second[column] = text;
        }
    }

    // --- assignment; false for lists of different shape ---
    bool Assign(List& to, List& from) {
        if (!SameShape(to, from)) return false;
        if (&to == &from) return true;
        const std::map<Path, Row> records = Selected(from);
        const bool keepsAll = FindLoop(&from) && to.parent;
        const bool isPlaced = FindLoop(&to) || !to.parent || FindLoop(to.parent);
        if (!FindLoop(&to) && !keepsAll && isPlaced) Remove(to, Scope(to));
        CopyRecords(to, from.columns, records, CopyMode::Replace);
        if (!isPlaced && !keepsAll) AppendEmpty(*to.parent);
        return true;
    }

    void Assign(List& to, Instance& from) {
        CopyRecords(to, from.elements, {{NewKey(to), from.texts}}, CopyMode::FromInstance);
    }

    void Assign(Instance& to, List& from) {
        const Row row = FindLoop(&from) ? FindLoop(&from)->On(&from).row : Row(from.columns.size());
        for (std::size_t i = 0; i < std::min(to.elements.size(), row.size()); ++i) {
            to.texts[i] = row[i];
            List* list = to.elements[i].nested;
            if (!list) continue;
            Remove(*list, {});
            if (List* nested = from.columns[i].nested) {
                CopyRecords(*list, nested->columns, Selected(*nested), CopyMode::Insert);
            }
        }
    }

    // --- macros; the scope is the list, or what is under the parent's current record ---
    void Empty(List& list) { Remove(list, Scope(list)); }

    void Reverse(List& list) {
        std::vector<Path> keys;
        for (const auto& record : Children(list, Scope(list)))
            keys.push_back(record.first);
        for (std::size_t i = 0; i < keys.size() / 2; ++i) {
            const Path &a = keys[i], &b = keys[keys.size() - 1 - i];
            const std::vector<Entry> atA = Subtree(list, a), atB = Subtree(list, b);
            Remove(atA);
            MoveSubtree(a, 0, atB);
            Remove(Subtree(list, b));
            MoveSubtree(b, 0, atA);
        }
    }

    void Sort(List& list, std::size_t column) {
        std::vector<Path> order;
        for (const auto& record : Children(list, Scope(list)))
            order.push_back(record.first);
        std::stable_sort(order.begin(), order.end(), [&](const Path& a, const Path& b) {
            const std::string &left = list.records[a][column], &right = list.records[b][column];
            return list.columns[column].isNumber ? std::atoi(left.c_str()) < std::atoi(right.c_str()) : left < right;
        });
        Renumber(list, order);
    }

    void Unify(List& list, std::size_t column) {
        std::vector<Path> order;
        for (const auto& [key, row] : Children(list, Scope(list))) {
            const std::string& text = row[column];
            const bool isNumber = list.columns[column].isNumber;
            const bool isNew = std::none_of(order.begin(), order.end(), [&](const Path& kept) {
                const std::string& other = list.records[kept][column];
                return isNumber ? std::atoi(text.c_str()) == std::atoi(other.c_str()) : text == other;
            });
            if (isNew) order.push_back(key);
        }
        Renumber(list, order);
    }

private:
    struct Entry {
        List* list;
        Path path;
        Row row;
    };
    enum class CopyMode { Replace, FromInstance, Insert };

    static Path NextKey(const List& list, const Path& parentKey) {
        const std::map<Path, Row> children = Children(list, parentKey);
        Path key = parentKey;
        key.push_back(!list.parent       ? static_cast<int>(children.size())
                      : children.empty() ? 0
                                         : children.rbegin()->first.back() + 1);
        return key;
    }

    static std::map<Path, Row> Children(const List& list, const Path& parentKey) {
        std::map<Path, Row> children;
        for (const auto& record : list.records)
            if (IsChild(record.first, parentKey)) children.insert(record);
        return children;
    }

    Path Scope(const List& list) { return list.parent ? FindLoop(list.parent)->On(list.parent).key : Path(); }

    bool Move(Loop& loop, Cursor& cursor) {
        const std::map<Path, Row> children = Children(*cursor.list, Scope(*cursor.list));
        auto place = children.begin();
        if (!cursor.notStarted) {
            const auto here = cursor.list->records.find(cursor.key);
            const auto next = here == cursor.list->records.end() ? here : std::next(here);
            place = next == cursor.list->records.end() ? children.end() : children.find(next->first);
        }
        cursor.notStarted = false;
        if (place == children.end()) {
            (loop.mode == Mode::Change && &cursor == &loop.second ? loop.secondEnded : loop.ended) = true;
            return false;
        }
        cursor.key = place->first;
        cursor.row = place->second;
        cursor.last = std::next(place) == children.end();
        return true;
    }

    bool MoveSecond(Loop& loop) {
        if (loop.mode != Mode::Extend && !loop.secondEnded && (Move(loop, loop.second) || loop.ended))
            return !loop.ended;
        loop.second.key = NextKey(*loop.second.list, Scope(*loop.second.list));
        loop.second.row.assign(loop.second.list->columns.size(), "");
        return true;
    }

    static void AppendEmpty(List& list) {
        for (List* each = &list; each; each = each->parent)
            each->records.insert({NewKey(*each), Row(each->columns.size())});
    }

    std::map<Path, Row> Selected(List& list) {
        if (Loop* loop = FindLoop(&list)) return {{loop->On(&list).key, loop->On(&list).row}};
        if (!list.parent) return list.records;
        return FindLoop(list.parent) ? Children(list, Scope(list)) : std::map<Path, Row>();
    }

    void CopyRecords(List& to, const std::vector<List::Column>& columns, const std::map<Path, Row>& records,
                     CopyMode mode, Path parentKey = {}) {
        if (FindLoop(to.parent)) parentKey = Scope(to);
        for (const auto& [sourceKey, sourceRow] : records) {
            Path key = NewKey(to);
            std::copy_n(parentKey.begin(), std::min(parentKey.size(), key.size()), key.begin());
            if (Loop* loop = FindLoop(&to)) key = loop->On(&to).key;
            Row row(to.columns.size());
            for (std::size_t i = 0; i < std::min(columns.size(), to.columns.size()); ++i) {
                List* from = columns[i].nested;
                List* nested = to.columns[i].nested;
                if (!nested) row[i] = sourceRow[i];
                if (!nested || !from) continue;
                if (from == nested) return;
                if (mode == CopyMode::FromInstance && FindLoop(&to)) Remove(*nested, FindLoop(&to)->On(&to).key);
                const std::map<Path, Row> below = from->parent ? Children(*from, sourceKey) : from->records;
                CopyRecords(*nested, from->columns, below, mode, key);
            }
            if (mode == CopyMode::Insert) {
                to.records.insert({key, row});
                continue;
            }
            to.records[key] = row;
            for (Loop& each : loops)
                if (each.Uses(&to) && each.On(&to).key == key) each.On(&to).row = row;
        }
    }

    static void Collect(List& list, const Path& key, std::vector<Entry>& subtree) {
        const auto record = list.records.find(key);
        if (record == list.records.end()) return;
        subtree.push_back({&list, key, record->second});
        for (const List::Column& column : list.columns) {
            if (!column.nested) continue;
            for (const auto& child : column.nested->records)
                if (child.first.size() == key.size() + 1 && IsChild(child.first, key)) {
                    Collect(*column.nested, child.first, subtree);
                }
        }
    }

    static std::vector<Entry> Subtree(List& list, const Path& key) {
        std::vector<Entry> subtree;
        Collect(list, key, subtree);
        return subtree;
    }

    static void Remove(const std::vector<Entry>& subtree) {
        for (const Entry& entry : subtree)
            entry.list->records.erase(entry.path);
    }

    static void Remove(List& list, const Path& parentKey) {
        for (const auto& record : Children(list, list.parent ? parentKey : Path()))
            Remove(Subtree(list, record.first));
    }

    static void MoveSubtree(Path base, int filler, const std::vector<Entry>& subtree) {
        Path low;
        for (const Entry& entry : subtree) {
            low.resize(std::max(low.size(), entry.path.size()), INT_MAX);
            for (std::size_t i = 0; i < entry.path.size(); ++i)
                low[i] = std::min(low[i], entry.path[i]);
        }
        base.resize(low.size(), filler);
        for (const Entry& entry : subtree) {
            Path path = entry.path;
            for (std::size_t i = 0; i < path.size(); ++i)
                path[i] += base[i] - low[i];
            entry.list->records.insert({path, entry.row});
        }
    }

    void Renumber(List& list, const std::vector<Path>& order) {
        std::vector<std::vector<Entry>> subtrees;
        for (const Path& key : order)
            subtrees.push_back(Subtree(list, key));
        Remove(list, Scope(list));
        for (std::size_t i = 0; i < order.size(); ++i) {
            Path base = order[i];
            base.back() = static_cast<int>(i);
            MoveSubtree(base, base.back(), subtrees[i]);
        }
    }
};

}  // namespace kvl::literal
