#include "data/library/Settings.h"

#include "data/library/PanelScaleKey.h"
#include "platform/KWFileio.h"

#include <array>
#include <unistd.h>

namespace ormund {

namespace {

constexpr std::array<PresetKindRow, kPresetKinds> kKinds{{
    {PresetKind::Global, "Global Presets", "Preset File", "kwe"},
    {PresetKind::Synth, "Synth Presets", "Synth Preset", "kws"},
}};

constexpr char kInstallPath[] = "installpath";
constexpr char kFirstUse[] = "firstuse";
constexpr char kContentPath[] = "contentpath";
constexpr char kOldPresetPath[] = "presetpath"; // before there were two kinds
constexpr char kPresetPathN[] = "presetpath%d";
constexpr char kPresetSavePathN[] = "presetsavepath%d";
constexpr char kAudioPath[] = "audiofilepath";
constexpr char kMapPath[] = "cc savepath";
constexpr char kOffline[] = "offline render";
constexpr char kFactory[] = "Factory";
constexpr char kUser[] = "User";

struct OptionRow {
    const char* key;
    int32_t start;
};
constexpr std::array<OptionRow, Settings::kOptions> kOptionRows{{
    {"ignorePrgChange", 1},
    {"CC Map Recall isolate", 0},
}};

constexpr std::array<SettingKey, 14> kKeys{{
    {kInstallPath, "string", "where the module found its shipped content, else the content place",
        "root of the installation; written if missing"},
    {kFirstUse, "int", "0", "0 until the first run has written the paths, then 1"},
    {kContentPath, "string", "not written; the per-user data place", "root of the preset folders"},
    {kPresetPathN, "string", "content path, kind, \"Factory\"",
        "folder in which kind 0 (global) or 1 (synth) is browsed"},
    {kPresetSavePathN, "string", "content path, kind, \"User\"", "folder in which it is saved"},
    {"%s", "string", "as presetpath", "the same under the title of the kind"},
    {"%ssave", "string", "as presetsavepath", "the same under the title of the kind"},
    {kOldPresetPath, "string", "never written",
        "older name of presetpath0, taken over when that is missing"},
    {kAudioPath, "string", "not written", "last folder of audio files"},
    {kMapPath, "string", "not written", "last folder of kwm files"},
    {kOptionRows[0].key, "int", "1", "MIDI program changes are ignored"},
    {kOptionRows[1].key, "int", "0", "a load leaves the map of controllers alone"},
    {kOffline, "int", "0", "1: the plug-in sounds at the host's offline process level too"},
    {kPanelScaleKey, "int", "not written; the desktop's scale",
        "size of the panel in percent: 100, 150 or 200"},
}};

std::string numbered(const char* pattern, PresetKind kind)
{
    std::string key = pattern;
    key.replace(key.find("%d"), 2, std::to_string(static_cast<int>(kind)));
    return key;
}

std::string readText(const SettingStore& keys, const char* key, std::string start)
{
    keys.readString(key, start);
    return start;
}

} // namespace

const PresetKindRow& presetKindRow(PresetKind kind) { return kKinds[static_cast<size_t>(kind)]; }

std::span<const SettingKey> settingKeys() { return kKeys; }

Settings::Settings(UserPlaces userPlaces) : places(std::move(userPlaces)), keys(places.store) { }

std::string Settings::contentPath() const { return readText(keys, kContentPath, places.content); }

std::string Settings::kindFolder(PresetKind kind, const char* below) const
{
    const std::string content = contentPath();
    if (content.empty())
        return {};
    return KWFileio::join(KWFileio::join(content, presetKindRow(kind).title), below);
}

void Settings::startUp()
{
    std::string path;
    if (!keys.readString(kInstallPath, path))
        keys.addString(kInstallPath, places.installed.empty() ? places.content : places.installed);
    int32_t used = 0;
    if (!keys.readInt(kFirstUse, used) || used == 0)
        firstRun();
    const std::string global = numbered(kPresetPathN, PresetKind::Global);
    if (!keys.readString(global.c_str(), path) && keys.readString(kOldPresetPath, path))
        keys.addString(global.c_str(), path);
    int32_t value = 0;
    for (const OptionRow& row : kOptionRows)
        if (!keys.readInt(row.key, value))
            keys.addInt(row.key, row.start);
    for (const PresetKindRow& row : kKinds)
        linkShipped(row.kind);
}

void Settings::firstRun() const
{
    keys.writeInt(kFirstUse, 1);
    for (const PresetKindRow& row : kKinds) {
        const std::string browse = kindFolder(row.kind, kFactory);
        const std::string save = kindFolder(row.kind, kUser);
        if (browse.empty())
            continue;
        KWFileio::makeFolder(save);
        keys.addString(numbered(kPresetPathN, row.kind).c_str(), browse);
        keys.addString(numbered(kPresetSavePathN, row.kind).c_str(), save);
        keys.addString(row.title, browse);
        keys.addString((std::string(row.title) + "save").c_str(), save);
    }
}

// A link and no copy, so that a new version brings its new presets. One that leads nowhere any more
// is made again.
void Settings::linkShipped(PresetKind kind) const
{
    const std::string factory = kindFolder(kind, kFactory);
    if (factory.empty() || places.installed.empty() || KWFileio::exists(factory))
        return;
    const std::string shipped =
        KWFileio::join(KWFileio::join(places.installed, presetKindRow(kind).title), kFactory);
    if (!KWFileio::isFolder(shipped) || !KWFileio::makeFolder(KWFileio::folderOf(factory)))
        return;
    ::unlink(factory.c_str());
    [[maybe_unused]] const int answer = ::symlink(shipped.c_str(), factory.c_str());
}

bool Settings::option(Option index) const
{
    const OptionRow& row = kOptionRows[static_cast<size_t>(index)];
    int32_t value = row.start;
    keys.readInt(row.key, value);
    return value != 0;
}

void Settings::setOption(Option index, bool on) const
{
    keys.writeInt(kOptionRows[static_cast<size_t>(index)].key, on ? 1 : 0);
}

bool Settings::rendersOffline() const
{
    int32_t value = 0;
    keys.readInt(kOffline, value);
    return value != 0;
}

void Settings::setRendersOffline(bool on) const { keys.writeInt(kOffline, on ? 1 : 0); }

std::string Settings::presetPath(PresetKind kind) const
{
    return readText(keys, numbered(kPresetPathN, kind).c_str(), kindFolder(kind, kFactory));
}

std::string Settings::presetSavePath(PresetKind kind) const
{
    return readText(keys, numbered(kPresetSavePathN, kind).c_str(), kindFolder(kind, kUser));
}

void Settings::setPresetPath(PresetKind kind, const std::string& folder) const
{
    keys.writeString(numbered(kPresetPathN, kind).c_str(), folder);
}

void Settings::setPresetSavePath(PresetKind kind, const std::string& folder) const
{
    keys.writeString(numbered(kPresetSavePathN, kind).c_str(), folder);
}

bool Settings::hasPresetPath(PresetKind kind) const
{
    std::string ignored;
    return keys.readString(numbered(kPresetPathN, kind).c_str(), ignored);
}

std::string Settings::mapFolder() const { return readText(keys, kMapPath, {}); }

void Settings::setMapFolder(const std::string& folder) const { keys.writeString(kMapPath, folder); }

std::string Settings::audioFolder() const { return readText(keys, kAudioPath, {}); }

void Settings::setAudioFolder(const std::string& folder) const
{
    keys.writeString(kAudioPath, folder);
}

} // namespace ormund
