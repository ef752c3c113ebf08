// Makes the factory bank from the texts in this folder: build-bank SOURCE-FOLDER TARGET-FOLDER
#include "data/library/ChunkFile.h"
#include "data/library/PresetAbout.h"
#include "data/library/Settings.h"
#include "data/state/StateWriter.h"
#include "platform/KWFileio.h"
#include "presets/BankSource.h"

#include <cstdio>
#include <memory>

using namespace ormund;

namespace {

constexpr size_t kMostNames = 10'000; // far more than there are
constexpr char kSourceEnding[] = ".txt";
constexpr char kAuthor[] = "Kelda Works";

bool buildOne(
    const std::string& source, const std::string& root, const std::string& target, PresetKind kind)
{
    const auto song = std::make_unique<DetachedSong>();
    std::string error;
    BankAbout about;
    if (!readBankSource(source, root, *song, error, &about)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return false;
    }
    song->position.names[static_cast<size_t>(kind)] = KWFileio::nameOf(target);
    const bool isSong = kind == PresetKind::Global;
    if (!about.line.empty() || !about.tags.empty())
        setAbout(song->parts.kept[static_cast<size_t>(kind)],
            {kAuthor, about.tags, about.line, isSong ? static_cast<float>(about.tempo) : 0.0f});
    KWChunk chunk;
    writeState(chunk, song->parts, kind);
    if (!KWFileio::makeFolder(KWFileio::folderOf(target)) || !writeChunkFile(target, chunk)) {
        std::fprintf(stderr, "%s cannot be written\n", target.c_str());
        return false;
    }
    return true;
}

// Every folder of a kind's sources becomes one of its "Factory".
int buildKind(
    const std::string& root, const std::string& sources, const std::string& target, PresetKind kind)
{
    int built = 0;
    bool allGood = true; // every mistake is reported, not the first alone
    const PresetKindRow& row = presetKindRow(kind);
    const std::string from = KWFileio::join(root, sources);
    size_t most = kMostNames;
    for (const auto& [folder, isFolder] : KWFileio::list(from, most))
        for (const auto& [file, below] : KWFileio::list(KWFileio::join(from, folder), most)) {
            if (below || !file.ends_with(kSourceEnding))
                continue;
            const std::string to = target + "/" + row.title + "/Factory/" + folder + "/"
                + KWFileio::nameOf(file) + "." + row.extension;
            if (!buildOne(from + "/" + folder + "/" + file, root, to, kind))
                allGood = false;
            ++built;
        }
    return allGood ? built : -1;
}

} // namespace

int main(int count, char** words)
{
    if (count != 3) {
        std::fprintf(stderr, "usage: build-bank SOURCE-FOLDER TARGET-FOLDER\n");
        return 2;
    }
    const int global = buildKind(words[1], "global", words[2], PresetKind::Global);
    const int synth = buildKind(words[1], "synth", words[2], PresetKind::Synth);
    if (global <= 0 || synth <= 0)
        return 1;
    std::printf("%d global presets and %d synth presets in %s\n", global, synth, words[2]);
    return 0;
}
