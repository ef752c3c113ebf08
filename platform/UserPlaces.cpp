#include "platform/UserPlaces.h"

#include "base/Product.h"
#include "platform/KWFileio.h"

#include <array>
#include <cstdlib>
#include <dlfcn.h>
#include <memory>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace ormund {

namespace {

constexpr char kRecovered[] = "Recovered";
constexpr char kSession[] = "session";
constexpr char kStoreFile[] = "settings.db";
constexpr int kMostLevels = 6; // from within a bundle up to the prefix
constexpr char kShippedFolder[] = "Global Presets/Factory";

std::string home()
{
    const char* fromEnvironment = std::getenv("HOME");
    if (fromEnvironment && *fromEnvironment == '/')
        return fromEnvironment;
    std::vector<char> room(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, room.data(), room.size(), &found) != 0 || !found
        || !found->pw_dir || *found->pw_dir != '/')
        return {};
    return found->pw_dir;
}

// Relative paths in these variables count as not set.
std::string place(const char* variable, const char* inHome)
{
    const char* value = std::getenv(variable);
    if (value && *value == '/')
        return KWFileio::join(value, product::kFolder);
    const std::string user = home();
    return user.empty() ? std::string()
                        : KWFileio::join(KWFileio::join(user, inHome), product::kFolder);
}

std::string realPath(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(
        ::realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : std::string();
}

// From the module's own file outwards: an installation may be moved, and a build tree works too.
std::string installation()
{
    Dl_info module{};
    if (::dladdr(reinterpret_cast<const void*>(&UserPlaces::find), &module) == 0
        || !module.dli_fname)
        return {};
    std::string folder = KWFileio::folderOf(realPath(module.dli_fname));
    constexpr std::array<const char*, 3> kBelow = {
        "share/ormund", ".local/share/ormund", "presets"};
    for (int level = 0; level < kMostLevels; ++level) {
        folder = KWFileio::folderOf(folder);
        for (const char* below : kBelow) {
            std::string candidate = KWFileio::join(folder, below);
            if (KWFileio::isFolder(KWFileio::join(candidate, kShippedFolder)))
                return candidate;
        }
        if (folder == "/" || folder == ".")
            break;
    }
    // A module that was copied somewhere else.
    const std::string configured = ORMUND_SHARE_DIR;
    return KWFileio::isFolder(KWFileio::join(configured, kShippedFolder)) ? configured
                                                                          : std::string();
}

} // namespace

std::string homeFolder()
{
    const std::string user = home();
    return user.empty() ? "/" : user;
}

UserPlaces UserPlaces::find()
{
    UserPlaces places;
    const std::string config = place("XDG_CONFIG_HOME", ".config");
    if (!config.empty())
        places.store = KWFileio::join(config, kStoreFile);
    places.content = place("XDG_DATA_HOME", ".local/share");
    places.installed = installation();
    const std::string state = place("XDG_STATE_HOME", ".local/state");
    if (!state.empty()) {
        places.recovery = KWFileio::join(state, kRecovered);
        places.session = KWFileio::join(state, kSession);
    }
    return places;
}

} // namespace ormund
