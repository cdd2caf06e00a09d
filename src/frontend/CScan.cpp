#include "frontend/CScan.h"

#include <algorithm>
#include <utility>

#include "messages/Log.h"
#include "platform/Platform.h"
#include "text/Utf8.h"

namespace kvl {

namespace {

MessageId SyntaxErrorFor(int entityKind) {
    if (entityKind == kEntityType) return ERR_DECL_TYPE_SYNTAX_1;
    return IsScriptKind(entityKind) ? ERR_DECL_SCRIPT_SYNTAX_1 : ERR_DECL_PATTERN_SYNTAX_1;
}

}  // namespace

void CScan::SetFileSource(std::string_view path, std::string text) {
    sourceName_ = path;
    ownText_ = std::move(text);
    Begin(Source::File, ownText_);
}

void CScan::SetStreamSource(std::string* text, int firstLine) {
    Begin(Source::Stream, *text);
    line_ = firstLine;
}

void CScan::SetConstantSource(std::string_view text) {
    ownText_ = text;
    Begin(Source::Constant, ownText_);
}

// A source without lead bytes is not copied.
void CScan::Begin(Source source, std::string& text) {
    source_ = source;
    utf8Source_ = text.find_first_of("\xC2\xC3") != std::string::npos;
    if (utf8Source_) text = FoldUtf8(text, utf8Source_);
    text_ = text;
    next_ = fetched_ = 0;
}

int CScan::GetChar() {
    if (next_ >= text_.size()) {
        ++characterCount_;
        return -1;
    }
    if (next_ == fetched_) CountFetched(text_.substr(fetched_, 1));
    return static_cast<unsigned char>(text_[next_++]);
}

void CScan::UngetChars(int count) {
    next_ -= static_cast<std::size_t>(count);
}

std::string_view CScan::Take(std::size_t count) {
    const std::string_view taken = text_.substr(next_, count);
    next_ += taken.size();
    if (next_ > fetched_) CountFetched(text_.substr(fetched_, next_ - fetched_));
    return taken;
}

// `bytes` lie directly behind what was fetched before.
void CScan::CountFetched(std::string_view bytes) {
    fetched_ += bytes.size();
    characterCount_ += static_cast<int>(bytes.size());
    if (source_ == Source::Constant) return;
    line_ += static_cast<int>(std::count(bytes.begin(), bytes.end(), '\n'));
    if (source_ == Source::Stream) return;
    const std::size_t lastEnd = bytes.rfind('\n');
    column_ = lastEnd == std::string_view::npos ? column_ + static_cast<int>(bytes.size())
                                                : static_cast<int>(bytes.size() - lastEnd - 1);
}

// Lines are not kept while scanning: a source without faults costs no line handling.
bool CScan::GetLineText(int number, std::string& text) const {
    text.clear();
    if (source_ != Source::File) return true;
    std::string bytes;
    if (Files().ReadWhole(sourceName_, bytes) != 0) return false;
    std::size_t start = 0;
    for (int line = 1; line < number && start != std::string::npos; ++line) {
        const std::size_t end = bytes.find('\n', start);
        start = end == std::string::npos ? end : end + 1;
    }
    if (number >= 1 && start != std::string::npos) text = bytes.substr(start, bytes.find('\n', start) - start);
    return true;
}

void CScan::SetMark(bool on) {
    markLine_ = on ? line_ : -1;
    markColumn_ = on ? column_ : -1;
}

void CScan::GetPosition(int& line, int& column, std::string& text) const {
    const bool marked = markLine_ != -1;
    line = marked ? markLine_ : line_;
    column = marked ? markColumn_ : column_;
    if (!GetLineText(line, text)) text.clear();
}

bool CScan::ReportError(SourceContext record, int id, std::string_view text) {
    record.positionMark = PositionMark(record.lineText, record.position);
    Print("\n");
    TheConsole().Flush();
    if (!IsConstantSource()) {
        if (text == "Syntax error") {
            id = SyntaxErrorFor(record.entityKind);
        } else if (!text.empty()) {
            id = ERR_EXEC_ENVIRON_FATAL_1;
            record.Set(ERRSTR_FATAL_REASON, text);
        }
        Report(id, record);
    }
    SetMark(false);
    return false;
}

}  // namespace kvl
