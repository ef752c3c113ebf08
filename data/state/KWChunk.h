// A flat array of 32-bit little-endian words: the one form of host state, preset files and maps.
#pragma once

#include "data/state/KWChunkableClass.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ormund {

// Written in two passes: beginMeasure(), the writer (each write only counts), beginFill(), the
// writer again. Read from a copy of foreign bytes with every word checked: past the end a read
// gives zeros, and the chunk remembers the first word that was not there.
// Belongs to one thread at a time.
class KWChunk {
public:
    KWChunk() = default;
    virtual ~KWChunk() = default;
    KWChunk(KWChunk&&) = default;
    KWChunk& operator=(KWChunk&&) = default;

    virtual void writeFloat(float value);
    virtual void readFloatTo(float& value);
    virtual float readFloat();
    virtual void unread(); // one word back
    virtual void readVec4To(std::array<float, 4>& values);
    virtual std::array<float, 4> readVec4();
    virtual void writeInt(int32_t value);
    virtual void readIntTo(int32_t& value);
    virtual int32_t readInt();
    // The length in bytes, then the bytes, zero-padded to whole words.
    virtual void writeString(std::string_view text);
    // The cursor moves by bytes / 4; a remainder is dropped.
    virtual void writeBytes(const void* source, size_t bytes);
    // Empty when the length is 0 or says more than is there, which also breaks the chunk. A text
    // ends at its first zero byte.
    virtual std::string readString();
    // As writeBytes; what is not there is filled with zeros.
    virtual void readBytes(void* target, size_t bytes);

    void skipWords(size_t count);

    void beginMeasure();
    // Makes room for the measured words, all zero, and goes back to the start.
    void beginFill();
    bool isMeasuring() const { return measureOnly; }
    // A copy of foreign bytes, ready to be read; a last piece of a word is left out.
    void assign(const void* bytes, size_t byteCount);
    void assign(std::vector<uint32_t> newWords);
    void clear();

    std::span<const uint32_t> words() const { return array; }
    const void* bytes() const { return array.data(); }
    size_t byteCount() const { return array.size() * sizeof(uint32_t); }

    size_t cursor() const { return at; }
    void setCursor(size_t word) { at = word; }
    // Words from the cursor to the limit: what a count that is read may at most be.
    size_t remaining() const { return at < end ? end - at : 0; }

    // A read passed the limit, or a reader found a value that makes no sense.
    bool isBroken() const { return broken; }
    size_t brokenWord() const { return brokenAt; }
    void fail(); // the value before the cursor makes no sense
    void failAt(size_t word);

    // Reads the five words; false when the magic word is another.
    bool readHeader();
    // `programVersion` is what the loader compares with its own.
    void writeHeader(int32_t programVersion);

    int32_t totalWords = 0;
    int32_t version = 0;
    float tempo = 120.0f;        // beats per minute at the time of saving
    float sampleRate = 44100.0f; // Hz

private:
    friend class ChunkLimit;
    uint32_t nextWord();
    void putWord(uint32_t word);

    std::vector<uint32_t> array;
    size_t at = 0;
    size_t end = 0; // reads stop here: the end of the array or of the record
    size_t brokenAt = 0;
    bool broken = false;
    bool measureOnly = true;
};

// For its life no read passes `count` words from the cursor; then the cursor stands at their end,
// whatever was read of them. More words than remain break the chunk.
class ChunkLimit {
public:
    ChunkLimit(KWChunk& limited, size_t count);
    ~ChunkLimit();
    ChunkLimit(const ChunkLimit&) = delete;
    ChunkLimit& operator=(const ChunkLimit&) = delete;

private:
    KWChunk& chunk;
    size_t outerEnd;
    size_t next;
};

} // namespace ormund
