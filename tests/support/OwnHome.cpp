// Every test program has a home of its own, so that no test reads or writes the user's settings.
#include <filesystem>
#include <stdlib.h>
#include <string>
#include <unistd.h>

namespace ormund {

namespace {

struct OwnHome {
    OwnHome()
    {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "ormund-home-XXXXXX").string();
        root = ::mkdtemp(pattern.data());
        owner = ::getpid();
        ::setenv("HOME", root.c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (root + "/config").c_str(), 1);
        ::setenv("XDG_DATA_HOME", (root + "/data").c_str(), 1);
    }
    ~OwnHome()
    {
        std::error_code ignored;
        if (owner == ::getpid())
            std::filesystem::remove_all(root, ignored);
    }
    std::string root;
    pid_t owner;
} ownHome;

} // namespace

} // namespace ormund
