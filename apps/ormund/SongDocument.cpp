#include "apps/ormund/SongDocument.h"

#include "apps/host/ScriptInterface.h"
#include "platform/KWFileio.h"
#include "platform/UserPlaces.h"

#include <array>

namespace ormund {

namespace {

constexpr VstInt32 kScripts = fourCharacters('K', 'W', 'O', 'R');
enum Code {
    kBeDocument = 13,
    kIsChanged = 14,
    kAskClose = 15,
    kKeepSong = 16,
    kSongPath = 17,
    kSaveSong = 18,
};
constexpr size_t kPathBytes = 8192;
constexpr int kIdlesBetweenNotes = 60;

} // namespace

SongDocument::SongDocument(HostedEffect& ownHost)
    : host(ownHost), sessionFile(UserPlaces::find().session)
{
}

VstIntPtr SongDocument::call(VstIntPtr code, void* ptr, float opt)
{
    return host.dispatch(effVendorSpecific, kScripts, code, ptr, opt);
}

void SongDocument::begin(bool offersRecovered)
{
    call(kBeDocument, nullptr, offersRecovered ? 1.0f : 0.0f);
}

void SongDocument::openLast()
{
    const long long size = KWFileio::size(sessionFile);
    if (size <= 0 || size >= static_cast<long long>(kPathBytes))
        return;
    std::string path(static_cast<size_t>(size), 0);
    if (!KWFileio::read(sessionFile, path.data(), path.size()) || !path.starts_with('/')
        || !path.ends_with(".kwe") || path.find('\0') != std::string::npos
        || !KWFileio::exists(path))
        return;
    if (loadFile(host, path).empty())
        noted = path;
}

void SongDocument::idle()
{
    if (++idles < kIdlesBetweenNotes || sessionFile.empty())
        return;
    idles = 0;
    std::array<char, kPathBytes> path{};
    call(kSongPath, path.data());
    if (noted == path.data())
        return;
    noted = path.data();
    KWFileio::makeFolder(KWFileio::folderOf(sessionFile));
    KWFileio::write(sessionFile, noted.data(), noted.size());
}

bool SongDocument::isChanged() { return call(kIsChanged) == 1; }

void SongDocument::askToClose() { call(kAskClose, nullptr, 1); }

bool SongDocument::mayClose() { return call(kAskClose) == 1; }

void SongDocument::save()
{
    if (call(kSaveSong) != 1)
        call(kKeepSong);
}

void SongDocument::keepForNextStart() { call(kKeepSong, nullptr, 1); }

} // namespace ormund
