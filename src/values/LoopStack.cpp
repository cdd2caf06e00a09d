#include "values/LoopStack.h"

#include <algorithm>
#include <iterator>

#include "values/CVariableKVLCategoryList.h"

namespace kvl {

Record& ListCursor::Own() {
    Detach();
    return own_;
}

void ListCursor::Borrow(RecordStore::Position position) {
    if (!borrowed_) list->borrowers_.push_back(this);
    borrowed_ = &list->records_.At(position);
    position_ = position;
    key.Assign(list->records_.PathAt(position));
}

void ListCursor::Hold(Record&& record) {
    LetGo();
    own_ = std::move(record);
}

void ListCursor::Detach() {
    if (!borrowed_) return;
    Record copy = borrowed_->Copy();
    LetGo();
    own_ = std::move(copy);
}

void ListCursor::LetGo() {
    if (!borrowed_) return;
    borrowed_ = nullptr;
    // Inner loops end first: from the last one the search is short, however many loops of the list run.
    auto& borrowers = list->borrowers_;
    borrowers.erase(std::next(std::find(borrowers.rbegin(), borrowers.rend(), this)).base());
}

}  // namespace kvl
