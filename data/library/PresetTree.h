// The folders of presets of one kind, and the files in them.
#pragma once

#include <string>
#include <vector>

namespace ormund {

struct PresetFile {
    std::string path;
    std::string name; // without the ending
};

// The loader's thread.
class PresetTree {
public:
    // The roots in their order; of each first its own files, then its sub-folders, all in byte
    // order. Folders without a preset are left out. `extension` without the dot.
    // Somebody may choose the root of a disk: a scan ends after so many names and folders.
    static constexpr size_t kMostNames = 200'000;
    static constexpr int kMostFolders = 2'000;
    void scan(const std::vector<std::string>& roots, const std::string& extension);

    int folderCount() const { return static_cast<int>(folders.size()); }
    int fileCount(int folder) const;                       // 0 outside
    const PresetFile* fileAt(int folder, int index) const; // null outside
    const std::string& folderName(int folder) const;       // empty outside
    const std::string& folderPath(int folder) const;       // empty outside
    int folderNamed(const std::string& name) const;        // -1 for none
    // The place of a file, or of the first one with its name in a folder of the same name, when it
    // was reached by another way; false, and nothing changed, when it is not in the tree.
    bool find(const std::string& path, int& folder, int& index) const;

    // What counts in one folder and in which order: for the tree, and for a menu or an arrow that
    // shows one folder of it. No more than `most` names are looked at, and taken off. An empty
    // extension takes all files. A folder that cannot be read is empty.
    struct Listing {
        std::vector<std::string> folders; // names
        std::vector<PresetFile> files;
    };
    static Listing list(const std::string& folder, const std::string& extension, size_t& most);

private:
    struct Folder {
        std::string path;
        std::string name;
        std::vector<PresetFile> files;
    };
    void add(const std::string& path, int depth);

    std::vector<Folder> folders;
    std::string extension;
    size_t namesLeft = 0;
    int foldersLeft = 0;
};

} // namespace ormund
