#pragma once
// The records of one list in key order, in chunks of bounded size, so that an insertion anywhere moves little, an
// append costs nothing more, and the children of one parent are neighbours.

#include <memory>
#include <vector>

#include "values/Record.h"
#include "values/RecordPath.h"

namespace kvl {

class RecordStore {
public:
    // A place in the store; valid until a record is inserted or erased.
    struct Position {
        std::size_t chunk = 0;
        std::size_t index = 0;
        bool operator==(const Position&) const = default;
    };

    std::size_t Size() const { return size_; }
    bool Empty() const { return size_ == 0; }

    Position Begin() const { return {0, 0}; }
    Position End() const { return {chunks_.size(), 0}; }
    Position Next(Position position) const {
        ++position.index;
        return position.index < chunks_[position.chunk]->records.size() ? position : Position{position.chunk + 1, 0};
    }
    // The position in front; not for the first.
    Position Before(Position position) const;
    PathView PathAt(Position position) const { return PathIn(*chunks_[position.chunk], position.index); }
    Record& At(Position position) const { return chunks_[position.chunk]->records[position.index]; }

    // The first record whose path is not below `path` (which may be shorter than the paths of the store).
    Position LowerBound(PathView path) const;
    // The first record behind all that equal `path` or have it as prefix.
    Position Behind(PathView path) const;
    Record* Find(PathView path) const;
    // The path of the last record; the store is not empty.
    PathView LastPath() const;

    // Adds a record behind all others; its path is greater than theirs.
    Record& Append(PathView path, Record&& record) {
        Chunk& chunk = ChunkToAppendTo(path.size());
        for (const int number : path)
            chunk.paths.push_back(number);
        return chunk.records.emplace_back(std::move(record));
    }
    // The same for a record over cells that its list holds. The caller adds its path to the paths returned, `length`
    // numbers.
    std::vector<int>& AppendOver(Cell* cells, std::uint32_t count, bool provisional, std::size_t length) {
        Chunk& chunk = ChunkToAppendTo(length);
        chunk.records.emplace_back(cells, count, provisional);
        return chunk.paths;
    }
    // Adds a record in its place. An existing path keeps its record (`inserted` false), and `record` is left as it is.
    Record& Insert(PathView path, Record&& record, bool& inserted);
    void Erase(Position first, Position last);
    // Takes off the last `count` records.
    void Truncate(std::size_t count);
    void Clear();

private:
    static constexpr std::size_t kChunkRecords = 512;

    struct Chunk {
        std::vector<int> paths;  // stride_ numbers for each record
        std::vector<Record> records;
    };

    PathView PathIn(const Chunk& chunk, std::size_t index) const {
        return {chunk.paths.data() + index * stride_, stride_};
    }
    // The last chunk with room for one record more, which the caller adds.
    Chunk& ChunkToAppendTo(std::size_t length) {
        if (chunks_.empty() || chunks_.back()->records.size() >= kChunkRecords) AddChunk(length);
        ++size_;
        return *chunks_.back();
    }
    void AddChunk(std::size_t length);
    template <class Below>
    Position Search(Below below) const;
    Position InsertAt(Position position, PathView path, Record&& record);

    std::size_t stride_ = 0;
    std::size_t size_ = 0;
    std::vector<std::unique_ptr<Chunk>> chunks_;  // none of them empty
};

}  // namespace kvl
