// A folder of its own for a test, gone afterwards.
#pragma once

#include <filesystem>
#include <stdlib.h>
#include <string>

namespace ormund {

class TestFolder {
public:
    TestFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "ormund-XXXXXX").string();
        root = ::mkdtemp(pattern.data());
    }
    ~TestFolder()
    {
        std::error_code ignored;
        std::filesystem::permissions(root, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(root, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::string& path() const { return root; }
    std::string operator/(const std::string& name) const { return root + "/" + name; }

private:
    std::string root;
};

} // namespace ormund
