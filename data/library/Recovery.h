// The songs that a crash has left behind, and the file in which an instance keeps its own.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ormund {

// A file of the recovery folder for as long as the instance lives. The kernel frees its lock when
// the process ends, however it ends: a file without one is left over. One thread at a time.
class RecoveryFile {
public:
    // In `folder`, which is made. Nothing is kept where that cannot be.
    explicit RecoveryFile(std::string folder);
    ~RecoveryFile(); // an orderly end leaves nothing, unless leave() was called
    RecoveryFile(const RecoveryFile&) = delete;
    RecoveryFile& operator=(const RecoveryFile&) = delete;

    // Replaces what was kept before; the name is shown to the user.
    bool write(std::span<const uint32_t> words, const std::string& name);
    void remove();
    bool isThere() const { return !file.empty(); }
    // What stands stays behind as after a crash.
    void leave() { stays = true; }

private:
    void lockOne();

    std::string folder;
    std::string key;  // of this instance among all that live
    std::string file; // empty while nothing is kept
    int lock = -1;
    bool stays = false;
};

// Gives each file that a dead process left its date and name as a preset ("2026-11-26 02.05
// Gated light.kwe"), and removes the oldest where there are too many. Answers the new ones' paths,
// the newest first. Any process, at any time.
std::vector<std::string> settleRecovered(const std::string& folder);
// The song's name in that of its file.
std::string recoveredName(const std::string& path);
// "26 Nov 02:05"
std::string recoveredDate(const std::string& path);

inline constexpr size_t kMostRecovered = 16;
inline constexpr long long kMostRecoveredBytes = 4 << 20;

} // namespace ormund
