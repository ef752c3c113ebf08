// The presets of a kind with what they say about themselves, to be shown and searched.
#pragma once

#include "data/library/PresetAbout.h"
#include "data/library/PresetTree.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace ormund {

struct ListedPreset {
    std::string path;
    std::string name;
    std::string folder;
    bool isMine = false;
    bool isRead = false; // what follows is known
    PresetSummary summary;
};

// The thread of the user interface. Names are there at once; a worker reads the files, and
// takeRead() brings in what it has.
class PresetList {
public:
    PresetList() = default;
    ~PresetList();
    PresetList(const PresetList&) = delete;
    PresetList& operator=(const PresetList&) = delete;

    // `mine` is the folder of the user's own presets. What was read of a file before is kept.
    void fill(const PresetTree& tree, const std::string& mine);
    // True when something new came in.
    bool takeRead();
    bool isReading() const { return readCount < presets.size(); }
    size_t read() const { return readCount; }
    const std::vector<ListedPreset>& all() const { return presets; }

    struct Query {
        std::string text;              // every word must be somewhere, in any case
        std::vector<std::string> tags; // all of them
    };
    struct Hit {
        size_t preset;
        bool byName; // else by folder, tag, author or description
    };
    // In the order of the list, those by name first.
    std::vector<Hit> find(const Query& query) const;
    // The tags that most presets have, the most frequent first.
    std::vector<std::string> commonTags(size_t most) const;

private:
    void stop();
    void work(const std::vector<std::string>& paths);

    std::vector<ListedPreset> presets;
    std::vector<std::string> nameWords; // in small letters
    std::vector<std::string> allWords;
    size_t readCount = 0;

    std::thread worker;
    std::atomic<bool> ending{false};
    std::mutex lock; // of `arrived`
    std::vector<std::pair<size_t, PresetSummary>> arrived;
};

// Paths in a file of their own, a line each: favourites, or what was used last.
class PresetMarks {
public:
    PresetMarks(std::string file, size_t mostPaths);

    bool contains(const std::string& path) const;
    void toggle(const std::string& path);
    void bringToFront(const std::string& path);
    const std::vector<std::string>& all() const { return paths; }

private:
    bool remove(const std::string& path);
    void save() const;

    std::string file;
    size_t most;
    std::vector<std::string> paths; // the newest first
};

} // namespace ormund
