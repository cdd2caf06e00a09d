#include "values/RecordStore.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace kvl {
namespace {

using Model = std::map<std::vector<int>, std::string>;

Model Content(const RecordStore& store) {
    Model content;
    for (RecordStore::Position p = store.Begin(); p != store.End(); p = store.Next(p)) {
        const PathView path = store.PathAt(p);
        content[{path.begin(), path.end()}] = store.At(p).Get(0);
    }
    return content;
}

Record RecordOf(std::string_view text) {
    Record record;
    record.Set(0, text);
    return record;
}

// Random insertions, erasures, ranges taken out and truncations, held against an ordered map.
TEST(RecordStoreTest, BehavesAsAnOrderedMap) {
    std::mt19937 random(7);
    for (int round = 0; round < 10; ++round) {
        RecordStore store;  // grows to several of its chunks
        Model model;
        for (int step = 0; step < 3000; ++step) {
            const int kind = static_cast<int>(random() % 800);
            const std::vector<int> path = {static_cast<int>(random() % 8), static_cast<int>(random() % 400)};
            if (kind < 794) {
                const std::string text = "text " + std::to_string(step);
                bool inserted = false;
                store.Insert(path, RecordOf(text), inserted);
                EXPECT_EQ(inserted, model.try_emplace(path, text).second);
            } else if (kind < 797) {
                const std::vector<int> parent = {path[0]};
                store.Erase(store.LowerBound(parent), store.Behind(parent));
                std::erase_if(model, [&](const auto& entry) { return entry.first[0] == parent[0]; });
            } else {
                const std::size_t count = model.size() - std::min<std::size_t>(model.size(), random() % 50);
                store.Truncate(count);
                model.erase(std::prev(model.end(), static_cast<std::ptrdiff_t>(count)), model.end());
            }
            ASSERT_EQ(store.Size(), model.size());
            ASSERT_EQ(store.Find(path) != nullptr, model.count(path) == 1);
        }
        EXPECT_EQ(Content(store), model);
    }
}

TEST(RecordTest, KeepsItsCellsThroughEveryKindOfText) {
    const std::string longText(100, 'x');
    const std::string input = "a place in the input";
    Cell cells[2] = {{1, input}, {3, std::string_view(input).substr(2, 5)}};
    Record record(cells, 2);
    EXPECT_EQ(record.Get(3), "place");
    record.Set(3, "short");
    record.Set(0, longText);
    record.Set(2, "");
    record.Set(1, record.Get(0));
    Record copy = record.Copy();
    record.Set(0, "now another text that is long");
    EXPECT_EQ(copy.Get(0), longText);
    EXPECT_EQ(copy.Get(1), longText);
    EXPECT_EQ(copy.Get(3), "short");
    EXPECT_EQ(copy.StoredCells(), 3U) << "an empty cell is not stored";
    EXPECT_EQ(cells[1].Text(), "place") << "the list's memory is not written";
}

// Both ways to find a cell, with cells missing everywhere.
TEST(RecordTest, FindsWhatItHoldsAndNothingElse) {
    std::mt19937 random(3);
    for (const unsigned columns : {3U, 20U, 60U}) {
        for (int round = 0; round < 200; ++round) {
            const auto share = random() % 10;
            std::vector<std::string> texts(columns);
            Record record;
            for (unsigned column = 0; column < columns; ++column) {
                if (random() % 10 > share) continue;
                texts[column] = std::to_string(random());
                record.Set(static_cast<int>(column), texts[column]);
            }
            for (unsigned column = 0; column < columns; ++column)
                EXPECT_EQ(record.Get(static_cast<int>(column)), texts[column]);
            EXPECT_EQ(record.Get(static_cast<int>(columns)), "");
        }
    }
}

TEST(RecordTest, APartialRecordLacksWhatWasNeverSet) {
    Record record;
    EXPECT_TRUE(record.Has(5));
    record.MakePartial();
    record.Set(2, "");
    EXPECT_TRUE(record.Has(2));
    EXPECT_FALSE(record.Has(5));
    EXPECT_FALSE(record.Copy().Has(5));
}

TEST(RecordPathTest, GrowsBeyondItsInlineNumbers) {
    RecordPath path;
    for (int i = 0; i < 10; ++i) {
        path.Append(i);
        EXPECT_EQ(path.Back(), i);
        EXPECT_EQ(path.View()[0], 0);
    }
    const RecordPath shorter(path.View().first(3));
    EXPECT_TRUE(IsChildKey(path, shorter));
    EXPECT_FALSE(IsChildKey(shorter, shorter));
    EXPECT_LT(ComparePaths(shorter, path), 0);
    path.Assign(path.View().first(4));
    EXPECT_EQ(path.Size(), 4U);
    EXPECT_EQ(path.Back(), 3);
}

}  // namespace
}  // namespace kvl
