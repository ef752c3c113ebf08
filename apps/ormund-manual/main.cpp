// Writes the manual as one page that needs no other file:
//
//     ormund-manual REPOSITORY PAGE [FOLDER FOR ITS PICTURES]
#include "apps/ormund-manual/ManualPage.h"
#include "platform/KWFileio.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>

using namespace ormund;

namespace {

// The user's own settings stay out of the pictures.
class OwnHome {
public:
    OwnHome()
    {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "ormund-manual-XXXXXX").string();
        if (!::mkdtemp(pattern.data()))
            throw std::runtime_error("no temporary folder can be made");
        root = pattern;
        for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            ::setenv(name, root.c_str(), 1);
    }
    ~OwnHome()
    {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    OwnHome(const OwnHome&) = delete;
    OwnHome& operator=(const OwnHome&) = delete;

private:
    std::filesystem::path root;
};

void write(const std::string& path, const void* bytes, size_t count)
{
    if (!KWFileio::write(path, bytes, count))
        throw std::runtime_error(path + " cannot be written");
}

} // namespace

int main(int count, char** words)
{
    if (count != 3 && count != 4) {
        std::fprintf(stderr, "usage: ormund-manual REPOSITORY PAGE [FOLDER FOR ITS PICTURES]\n");
        return 2;
    }
    try {
        const OwnHome home;
        const std::string root = words[1];
        const auto pictures = takePanelPictures(root + "/docs/manual/song.txt", root + "/presets");
        if (count == 4)
            for (const auto& [name, picture] : pictures)
                write(std::string(words[3]) + "/" + name + ".png", picture.png.data(),
                    picture.png.size());
        const std::string page = ManualPage(pictures, ORMUND_VERSION).fill(root + "/docs/manual");
        write(words[2], page.data(), page.size());
        return 0;
    } catch (const std::exception& mishap) {
        std::fprintf(stderr, "ormund-manual: %s\n", mishap.what());
        return 1;
    }
}
