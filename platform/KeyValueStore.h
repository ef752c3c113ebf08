// The user's settings: strings and whole numbers under a name, in one file of the per-user place.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <variant>

namespace ormund {

using StoredSetting = std::variant<int32_t, std::string>;

enum class StoreAnswer : uint8_t {
    Done,
    Missing, // the file or the key
    Busy,    // another program held the file for all the time that was given
    Broken,  // the file is no store: no database, a part of one, or one with other tables
    Failed,  // there is no place for the file, or it may not be read or written
};

// Each access opens the file, reads or writes, and closes it, so that several hosts and instances
// share it without losing anything. Any thread but the audio thread.
class KeyValueStore {
public:
    // An empty path: nothing is ever there.
    explicit KeyValueStore(std::string filePath) : path(std::move(filePath)) { }

    // `value` is kept unless Done. A value of neither kind counts as missing.
    StoreAnswer get(
        const char* key, StoredSetting& value, std::chrono::milliseconds patience) const;
    StoreAnswer put(const char* key, const StoredSetting& value, std::chrono::milliseconds patience,
        bool onlyIfMissing = false) const;

    // The same with some seconds of patience, where what fails in any way behaves as missing.
    bool readString(const char* key, std::string& value) const; // `value` is kept when false
    bool writeString(const char* key, const std::string& value) const;
    bool readInt(const char* key, int32_t& value) const;
    bool writeInt(const char* key, int32_t value) const;

private:
    std::string path;
};

} // namespace ormund
