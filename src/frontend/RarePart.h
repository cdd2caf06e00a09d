#pragma once
// A part of a record that most records lack: absent it costs a pointer, and reads as empty.

#include <memory>

namespace kvl {

template <class Part>
class RarePart {
public:
    const Part& operator*() const { return part_ ? *part_ : kAbsent; }
    const Part* operator->() const { return &**this; }

    // For writing: null where the part is absent.
    Part* Find() { return part_.get(); }
    // For writing: made where it is absent.
    Part& Make() {
        if (!part_) part_ = std::make_unique<Part>();
        return *part_;
    }

private:
    static inline const Part kAbsent{};
    std::unique_ptr<Part> part_;
};

}  // namespace kvl
