#pragma once
// What an empty main script stands for: the script that the program brings along in the folder "_1" beside the
// executable. It is told in a small input file for which script it runs.

#include <string>
#include <string_view>

namespace kvl {

class StandardScript {
public:
    StandardScript() = default;
    StandardScript(const StandardScript&) = delete;
    StandardScript& operator=(const StandardScript&) = delete;
    ~StandardScript();  // the private copy goes away

    // Writes the input file for the empty script. Where the folder beside the executable cannot be written, as for an
    // installed program, its files are taken to a private folder first. False after a message.
    [[nodiscard]] bool Prepare(std::string_view emptyScript);
    // The path of the script to run.
    std::string Path() const;

private:
    [[nodiscard]] bool CopyToPrivateDirectory();

    std::string directory_;         // with its last separator
    std::string privateDirectory_;  // empty while none was made
};

}  // namespace kvl
