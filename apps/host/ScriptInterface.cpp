#include "apps/host/ScriptInterface.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace ormund {

namespace {

constexpr VstInt32 kDoor = fourCharacters('K', 'W', 'O', 'R');
constexpr int kMessageBytes = 8192;
enum DoorCode {
    kLoadGlobal = 1,
    kLoadSynth,
    kSaveGlobal,
    kSaveSynth,
    kLoadMap,
    kMessage = 8,
    kReadParameter = 12
};

std::string pass(HostedEffect& host, VstIntPtr code, const std::string& path, const char* verb)
{
    std::string copy = path;
    if (host.dispatch(effVendorSpecific, kDoor, code, copy.data()) == 1)
        return {};
    char message[kMessageBytes] = {};
    host.dispatch(effVendorSpecific, kDoor, kMessage, message);
    std::string text = message;
    std::replace(text.begin(), text.end(), '\n', ' ');
    if (text.empty())
        text = "it is damaged or no file of Ormund's";
    return std::string("cannot ") + verb + " " + path + ": " + text;
}

} // namespace

std::string loadFile(HostedEffect& host, const std::string& path)
{
    errno = 0;
    std::error_code isFolder;
    if (!std::ifstream(path, std::ios::binary) || std::filesystem::is_directory(path, isFolder))
        return "cannot read " + path + ": " + std::strerror(errno ? errno : EISDIR);
    if (path.ends_with(".kwm"))
        return pass(host, kLoadMap, path, "load");
    if (path.ends_with(".kws"))
        return pass(host, kLoadSynth, path, "load");
    if (path.ends_with(".kwe"))
        return pass(host, kLoadGlobal, path, "load");
    return "cannot load " + path + ": a preset ends in .kwe or .kws";
}

std::string savePreset(HostedEffect& host, const std::string& path)
{
    return pass(host, path.ends_with(".kws") ? kSaveSynth : kSaveGlobal, path, "save");
}

float readParameter(HostedEffect& host, int tag)
{
    float raw = 0;
    host.dispatch(effVendorSpecific, kDoor, kReadParameter, &raw, static_cast<float>(tag));
    return raw;
}

} // namespace ormund
