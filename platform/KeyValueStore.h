// The user's settings: strings and whole numbers under a name, in one file of the per-user place.
#pragma once

#include <cstdint>
#include <string>

namespace ormund {

// Each access opens the file, reads or writes, and closes it, so that several hosts and instances
// share it without losing anything. What cannot be read or written behaves as missing; nothing is
// reported. Any thread but the audio thread.
class KeyValueStore {
public:
    // An empty path: nothing is ever there.
    explicit KeyValueStore(std::string filePath) : path(std::move(filePath)) { }

    bool readString(const char* key, std::string& value) const; // `value` is kept when false
    bool writeString(const char* key, const std::string& value) const;
    bool readInt(const char* key, int32_t& value) const;
    bool writeInt(const char* key, int32_t value) const;

private:
    std::string path;
};

} // namespace ormund
