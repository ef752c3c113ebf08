// Records of later programs, which this one does not know and hands on as they stand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ormund {

// In the order of the file. The loader's thread.
class KeptRecords {
public:
    // What all of them together may hold; a file with more is refused.
    static constexpr size_t kMostWords = size_t{1} << 20;

    struct Record {
        int32_t key = 0;
        std::vector<uint32_t> words;
        friend bool operator==(const Record&, const Record&) = default;
    };

    // False, and nothing kept, when there is no room for it.
    bool add(int32_t key, std::vector<uint32_t> words)
    {
        if (words.size() + kRecordHead > kMostWords - held)
            return false;
        held += words.size() + kRecordHead;
        records.push_back({key, std::move(words)});
        return true;
    }
    void clear() { *this = {}; }
    const std::vector<Record>& all() const { return records; }
    friend bool operator==(const KeptRecords&, const KeptRecords&) = default;

private:
    static constexpr size_t kRecordHead = 2; // key and size: an empty record takes room too

    std::vector<Record> records;
    size_t held = 0;
};

} // namespace ormund
