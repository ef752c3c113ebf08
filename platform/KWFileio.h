// Whole files and folders. No state; nothing throws. Any thread but the audio thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ormund {

class KWFileio {
public:
    struct Entry {
        std::string name;
        bool isFolder;
        friend bool operator==(const Entry&, const Entry&) = default;
    };
    // The first `bytes` of a file. False when it is no plain file, cannot be read or is shorter.
    static bool read(const std::string& path, void* buffer, size_t bytes);
    // Bytes of a plain file; -1 for anything else.
    static long long size(const std::string& path);
    // Whether a write may replace what is there: nothing, a plain file, or a link to one. A device,
    // a pipe or a link that leads nowhere was not made by saving and must not go by it.
    static bool mayWrite(const std::string& path);
    // All of it or nothing: written beside the target, flushed to the disk and renamed over it. On
    // failure the old file stands as it was. A link is followed. What a killed write left in the
    // folder more than a day ago is removed.
    static bool write(const std::string& path, const void* buffer, size_t bytes);
    // The plain files and the folders in a folder, links followed, without "." and "..", in byte
    // order; empty when it cannot be read. Looks at no more than `most` names and takes them off.
    static std::vector<Entry> list(const std::string& folder, size_t& most);
    static bool remove(const std::string& path); // a file
    static bool exists(const std::string& path);
    static bool isFolder(const std::string& path); // links followed
    // With all folders above it. True when it is there afterwards.
    static bool makeFolder(const std::string& path);

    static std::string join(const std::string& folder, const std::string& name);
    static std::string folderOf(const std::string& path); // without the last slash
    static std::string nameOf(const std::string& path);   // without folder and ending
};

} // namespace ormund
