// The key store as the window uses it: what cannot be written now is written later.
#pragma once

#include "platform/KeyValueStore.h"

#include <cstdint>
#include <memory>
#include <string>

namespace ormund {

// Another program may hold the file locked. Nothing here waits for it: a value is then kept in
// memory, counts as written for every instance in the process, and a thread that lives only as long
// as something waits writes it once the file is free; at the latest when the last SettingStore
// goes, which waits some seconds. What is read while the file is locked is what was last known.
//
// A file that is no store, or whose table is another, is set aside under a dated name with one
// message, and a new one is begun. Any thread but the audio thread.
class SettingStore {
public:
    explicit SettingStore(std::string path);
    ~SettingStore();
    SettingStore(const SettingStore&) = delete;
    SettingStore& operator=(const SettingStore&) = delete;

    bool readString(const char* key, std::string& value) const; // `value` is kept when false
    bool readInt(const char* key, int32_t& value) const;
    // False when it can never be written, for instance without a place for the file.
    bool writeString(const char* key, const std::string& value) const;
    bool writeInt(const char* key, int32_t value) const;
    // For what a first run finds missing: a value that stands in a file which was locked meanwhile
    // is not replaced.
    bool addString(const char* key, const std::string& value) const;
    bool addInt(const char* key, int32_t value) const;

    // Values that wait to be written, of all files.
    static size_t waiting();

private:
    struct Shared;
    static Shared& shared();
    bool read(const char* key, StoredSetting& value) const;
    bool write(const char* key, StoredSetting value, bool onlyIfMissing) const;

    std::string path;
};

} // namespace ormund
