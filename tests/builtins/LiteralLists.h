#pragma once
// Lists as plain ordered maps from key to record, with loops that copy each record they stand on: what the lists of the
// system must come to, by the shortest way and at any cost.

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
bool SameShape(const List& a, const List& b);

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

class Lists {
public:
    std::deque<Loop> loops;  // innermost last

    // Of a record that the input parser adds.
    static Path NewKey(const List& list);

    // --- loops ---
    Loop* FindLoop(const List* list);
    bool First(Loop& loop);  // false when there is no pass
    bool Next(Loop& loop);
    void StoreBack(Loop& loop);

    // --- columns and their values ---
    const std::string& Read(const List& list, std::size_t column) { return FindLoop(&list)->On(&list).row[column]; }
    // What "=" does to the second list of a loop before it writes; `left` is the list or the list of the column.
    void MarkSecond(List* left);
    // The text in front of an operator; a record is made where no loop runs.
    std::string ReadForWriting(List& list, std::size_t column);
    void Write(List& list, std::size_t column, const std::string& text);

    // --- assignment; false for lists of different shape ---
    bool Assign(List& to, List& from);
    void Assign(List& to, Instance& from);
    void Assign(Instance& to, List& from);

    // --- macros; the scope is the list, or what is under the parent's current record ---
    void Empty(List& list) { Remove(list, Scope(list)); }
    void Reverse(List& list);
    void Sort(List& list, std::size_t column);
    void Unify(List& list, std::size_t column);

private:
    struct Entry {
        List* list;
        Path path;
        Row row;
    };
    enum class CopyMode { Replace, FromInstance, Insert };

    static Path NextKey(const List& list, const Path& parentKey);
    static std::map<Path, Row> Children(const List& list, const Path& parentKey);
    Path Scope(const List& list);
    bool Move(Loop& loop, Cursor& cursor);
    bool MoveSecond(Loop& loop);
    static void AppendEmpty(List& list);
    std::map<Path, Row> Selected(List& list);
    void CopyRecords(List& to, const std::vector<List::Column>& columns, const std::map<Path, Row>& records,
                     CopyMode mode, Path parentKey = {});
    static void Collect(List& list, const Path& key, std::vector<Entry>& subtree);
    static std::vector<Entry> Subtree(List& list, const Path& key);
    static void Remove(const std::vector<Entry>& subtree);
    static void Remove(List& list, const Path& parentKey);
    static void MoveSubtree(Path base, int filler, const std::vector<Entry>& subtree);
    void Renumber(List& list, const std::vector<Path>& order);
};

}  // namespace kvl::literal
