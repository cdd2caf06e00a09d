#pragma once
// A directory of the real file system that goes away at the end of a test.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace kvl {

class RealDirectory : public testing::Test {
protected:
    RealDirectory() : root_(testing::TempDir() + "kvlTest-XXXXXX") {
        if (mkdtemp(root_.data()) == nullptr) ADD_FAILURE() << "no directory " << root_;
    }
    ~RealDirectory() override { std::filesystem::remove_all(root_); }

    std::string Path(const std::string& name) const { return root_ + "/" + name; }

    void Put(const std::string& name, const std::string& content) const {
        std::ofstream(Path(name), std::ios::binary) << content;
    }
    std::string Get(const std::string& name) const {
        std::ifstream file(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::vector<std::string> Entries() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(root_))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
    struct stat Status(const std::string& name) const {
        struct stat status {};
        EXPECT_EQ(stat(Path(name).c_str(), &status), 0) << name;
        return status;
    }
    unsigned Mode(const std::string& name) const { return Status(name).st_mode & 07777; }

    std::string root_;
};

}  // namespace kvl
