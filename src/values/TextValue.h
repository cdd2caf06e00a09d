#pragma once
// The storage of one value: a text of its own, or a place in a text that it keeps alive. Storage is shared between
// variables that stand for the same value.

#include <memory>
#include <string>
#include <string_view>

namespace kvl {

class TextValue {
public:
    std::string_view View() const { return keep_ ? view_ : std::string_view(own_); }

    void Set(std::string_view text) {
        own_.assign(text);  // before the old text is let go: `text` may look into it
        keep_.reset();
    }
    void Set(std::string&& text) {
        own_ = std::move(text);
        keep_.reset();
    }
    // `text` may look into the present text.
    void Append(std::string_view text) {
        if (!keep_) {
            own_.append(text);
            return;
        }
        own_.assign(view_).append(text);
        keep_.reset();
    }
    // `view` looks into *keep, which lives at least as long.
    void SetPlace(std::shared_ptr<const std::string> keep, std::string_view view) {
        own_.clear();
        keep_ = std::move(keep);
        view_ = view;
    }
    void Clear() {
        own_.clear();
        keep_.reset();
    }

private:
    std::string own_;
    std::shared_ptr<const std::string> keep_;
    std::string_view view_;
};

}  // namespace kvl
