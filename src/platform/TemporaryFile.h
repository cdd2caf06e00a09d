#pragma once
// A file in the making: beside its later place, unnamed as long as the file system allows that, and gone with this
// object unless it was given its name. For the files of this folder only.
//
// A temporary name shows who made it, and an flock on the file shows that he lives. The next process that writes in a
// directory removes the files of that name there whose lock is free: what a killed process left behind.

#include <string>

#include "platform/Descriptor.h"

namespace kvl {

class TemporaryFile {
public:
    TemporaryFile() = default;
    TemporaryFile(TemporaryFile&&) = default;
    TemporaryFile& operator=(TemporaryFile&&) = delete;
    ~TemporaryFile();  // takes the temporary name away

    // Makes an empty file in `directory`, open for reading and writing. 0 or an error number.
    int Create(const std::string& directory, unsigned mode);
    int Number() const { return file_.Number(); }
    // Gives the file its place in the directory: over what has this name there, in one step. 0 or an error number.
    int TakeName(const std::string& name);

private:
    int CreateNamed(unsigned mode);
    int LinkTemporaryName();

    Descriptor directory_;
    Descriptor file_;
    std::string temporaryName_;  // empty while unnamed
};

}  // namespace kvl
