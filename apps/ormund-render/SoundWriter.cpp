#include "apps/ormund-render/SoundWriter.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <sndfile.h>

namespace ormund {

namespace {

struct Ending {
    const char* text;
    int format;
};
constexpr Ending kEndings[] = {
    {".wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24},
    {".flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24},
    {".ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
};

int formatOf(const std::string& path)
{
    const size_t dot = path.rfind('.');
    std::string ending = dot == std::string::npos ? "" : path.substr(dot);
    std::transform(ending.begin(), ending.end(), ending.begin(),
        [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    for (const Ending& known : kEndings)
        if (ending == known.text)
            return known.format;
    return 0;
}

SNDFILE* handle(void* file) { return static_cast<SNDFILE*>(file); }

} // namespace

void SoundWriter::Closer::operator()(void* opened) const { sf_close(handle(opened)); }

std::string SoundWriter::open(const std::string& path, int sampleRate)
{
    name = path;
    SF_INFO info{};
    info.format = formatOf(path);
    info.channels = 2;
    info.samplerate = sampleRate;
    if (info.format == 0)
        return "cannot write " + path + ": a sound file ends in .wav, .flac or .ogg";
    errno = 0;
    file.reset(sf_open(path.c_str(), SFM_WRITE, &info));
    if (!file)
        return "cannot write " + path + ": "
            + (errno ? std::strerror(errno) : sf_strerror(nullptr));
    // A sample beyond full scale becomes full scale, never the other end of the range.
    sf_command(handle(file.get()), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    return {};
}

bool SoundWriter::write(std::span<const float> left, std::span<const float> right)
{
    interleaved.resize(2 * left.size());
    for (size_t i = 0; i < left.size(); ++i) {
        interleaved[2 * i] = left[i];
        interleaved[2 * i + 1] = right[i];
    }
    const auto frames = static_cast<sf_count_t>(left.size());
    failed = failed || sf_writef_float(handle(file.get()), interleaved.data(), frames) != frames;
    return !failed;
}

std::string SoundWriter::close()
{
    const bool closed = sf_close(handle(file.release())) == 0;
    return closed && !failed ? "" : "cannot write " + name + ": the disk took not all of it";
}

} // namespace ormund
