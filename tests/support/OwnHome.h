// A home folder for one test program, so that the user's settings and presets are neither read nor
// written. Make one before the first plug-in instance.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace ormund {

class OwnHome {
public:
    OwnHome()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "ormund-test-XXXXXX");
        folder = mkdtemp(pattern.data());
        for (const char* name :
            {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
            setenv(name, folder.c_str(), 1);
    }
    ~OwnHome()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    OwnHome(const OwnHome&) = delete;
    OwnHome& operator=(const OwnHome&) = delete;

    std::string file(const std::string& name) const { return folder / name; }

private:
    std::filesystem::path folder;
};

} // namespace ormund
