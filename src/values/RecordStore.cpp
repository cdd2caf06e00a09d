#include "values/RecordStore.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kvl {

namespace {

template <class T>
void EraseSpan(std::vector<T>& vector, std::size_t first, std::size_t last) {
    vector.erase(vector.begin() + static_cast<std::ptrdiff_t>(first),
                 vector.begin() + static_cast<std::ptrdiff_t>(last));
}

}  // namespace

RecordStore::Position RecordStore::Before(Position position) const {
    if (position.index > 0) return {position.chunk, position.index - 1};
    return {position.chunk - 1, chunks_[position.chunk - 1]->records.size() - 1};
}

RecordStore::Position RecordStore::LowerBound(PathView path) const {
    return Search([path](PathView other) { return ComparePaths(other, path) < 0; });
}

RecordStore::Position RecordStore::Behind(PathView path) const {
    return Search([path](PathView other) {
        const PathView head = other.first(std::min(other.size(), path.size()));
        return ComparePaths(head, path) <= 0;
    });
}

Record* RecordStore::Find(PathView path) const {
    const Position position = LowerBound(path);
    if (position == End() || ComparePaths(PathAt(position), path) != 0) return nullptr;
    return &At(position);
}

PathView RecordStore::LastPath() const {
    return PathIn(*chunks_.back(), chunks_.back()->records.size() - 1);
}

Record& RecordStore::Insert(PathView path, Record&& record, bool& inserted) {
    inserted = true;
    if (size_ == 0 || ComparePaths(LastPath(), path) < 0) return Append(path, std::move(record));
    const Position position = LowerBound(path);
    inserted = position == End() || ComparePaths(PathAt(position), path) != 0;
    return inserted ? At(InsertAt(position, path, std::move(record))) : At(position);
}

void RecordStore::Erase(Position first, Position last) {
    while (first != last && first.chunk < chunks_.size()) {
        Chunk& chunk = *chunks_[first.chunk];
        const std::size_t end = first.chunk == last.chunk ? last.index : chunk.records.size();
        EraseSpan(chunk.records, first.index, end);
        EraseSpan(chunk.paths, first.index * stride_, end * stride_);
        size_ -= end - first.index;
        if (first.chunk == last.chunk) break;
        first = {first.chunk + 1, 0};
    }
    std::erase_if(chunks_, [](const auto& chunk) { return chunk->records.empty(); });
}

void RecordStore::Truncate(std::size_t count) {
    while (count > 0 && !chunks_.empty()) {
        Chunk& chunk = *chunks_.back();
        const std::size_t take = std::min(count, chunk.records.size());
        const std::size_t keep = chunk.records.size() - take;
        EraseSpan(chunk.records, keep, chunk.records.size());
        chunk.paths.resize(keep * stride_);
        size_ -= take;
        count -= take;
        if (keep == 0) chunks_.pop_back();
    }
}

void RecordStore::Clear() {
    chunks_.clear();
    size_ = 0;
}

void RecordStore::AddChunk(std::size_t length) {
    if (size_ == 0) stride_ = length;
    chunks_.push_back(std::make_unique<Chunk>());
    if (chunks_.size() == 1) return;  // a list of few records takes the room of few
    chunks_.back()->records.reserve(kChunkRecords);
    chunks_.back()->paths.reserve(kChunkRecords * stride_);
}

// The first position whose path is not `below`; the paths below come first.
template <class Below>
RecordStore::Position RecordStore::Search(Below below) const {
    const auto chunk = std::partition_point(chunks_.begin(), chunks_.end(), [&](const auto& candidate) {
        return below(PathIn(*candidate, candidate->records.size() - 1));
    });
    if (chunk == chunks_.end()) return End();
    std::size_t low = 0;
    std::size_t high = (*chunk)->records.size();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (below(PathIn(**chunk, middle))) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return {static_cast<std::size_t>(chunk - chunks_.begin()), low};
}

RecordStore::Position RecordStore::InsertAt(Position position, PathView path, Record&& record) {
    if (position == End()) {
        Append(path, std::move(record));
        return {chunks_.size() - 1, chunks_.back()->records.size() - 1};
    }
    if (chunks_[position.chunk]->records.size() >= kChunkRecords) {
        Chunk& full = *chunks_[position.chunk];
        auto upper = std::make_unique<Chunk>();
        constexpr std::size_t kHalf = kChunkRecords / 2;
        upper->records.assign(std::make_move_iterator(full.records.begin() + kHalf),
                              std::make_move_iterator(full.records.end()));
        upper->paths.assign(full.paths.begin() + static_cast<std::ptrdiff_t>(kHalf * stride_), full.paths.end());
        full.records.resize(kHalf);
        full.paths.resize(kHalf * stride_);
        chunks_.insert(chunks_.begin() + static_cast<std::ptrdiff_t>(position.chunk) + 1, std::move(upper));
        if (position.index > kHalf) position = {position.chunk + 1, position.index - kHalf};
    }
    Chunk& chunk = *chunks_[position.chunk];
    chunk.records.insert(chunk.records.begin() + static_cast<std::ptrdiff_t>(position.index), std::move(record));
    chunk.paths.insert(chunk.paths.begin() + static_cast<std::ptrdiff_t>(position.index * stride_), path.begin(),
                       path.end());
    ++size_;
    return position;
}

}  // namespace kvl
