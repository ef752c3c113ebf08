// A stereo sound file that grows block by block; its format follows the name's ending.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace ormund {

class SoundWriter {
public:
    // Opens "x.wav" and "x.flac" with 24 bits and "x.ogg" as Vorbis. Empty, or what is wrong.
    std::string open(const std::string& path, int sampleRate);
    bool isOpen() const { return file != nullptr; }
    // Both sides have the same length; 1.0 is full scale. False when the disk takes no more.
    bool write(std::span<const float> left, std::span<const float> right);
    // Empty, or what is wrong.
    std::string close();

private:
    struct Closer {
        void operator()(void* opened) const;
    };
    std::unique_ptr<void, Closer> file;
    std::string name;
    std::vector<float> interleaved;
    bool failed = false;
};

} // namespace ormund
