#include "data/state/KWChunk.h"

#include "data/state/ChunkFormat.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace ormund {

static_assert(std::endian::native == std::endian::little);

namespace {
constexpr size_t kWord = sizeof(uint32_t);
}

uint32_t KWChunk::nextWord()
{
    if (at >= end) {
        failAt(at);
        ++at;
        return 0;
    }
    return array[at++];
}

void KWChunk::putWord(uint32_t word)
{
    if (!measureOnly) {
        if (at < array.size())
            array[at] = word;
        else
            failAt(at);
    }
    ++at;
}

void KWChunk::writeFloat(float value) { putWord(std::bit_cast<uint32_t>(value)); }

void KWChunk::readFloatTo(float& value) { value = readFloat(); }

float KWChunk::readFloat() { return std::bit_cast<float>(nextWord()); }

void KWChunk::unread()
{
    if (at > 0)
        --at;
}

void KWChunk::readVec4To(std::array<float, 4>& values)
{
    for (float& value : values)
        value = readFloat();
}

std::array<float, 4> KWChunk::readVec4()
{
    std::array<float, 4> values{};
    readVec4To(values);
    return values;
}

void KWChunk::writeInt(int32_t value) { putWord(static_cast<uint32_t>(value)); }

void KWChunk::readIntTo(int32_t& value) { value = readInt(); }

int32_t KWChunk::readInt() { return static_cast<int32_t>(nextWord()); }

void KWChunk::writeString(std::string_view text)
{
    writeInt(static_cast<int32_t>(text.size()));
    for (size_t start = 0; start < text.size(); start += kWord) {
        uint32_t word = 0;
        std::memcpy(&word, text.data() + start, std::min(kWord, text.size() - start));
        putWord(word);
    }
}

void KWChunk::writeBytes(const void* source, size_t bytes)
{
    for (size_t i = 0; i < bytes / kWord; ++i) {
        uint32_t word = 0;
        std::memcpy(&word, static_cast<const char*>(source) + i * kWord, kWord);
        putWord(word);
    }
}

std::string KWChunk::readString()
{
    const int32_t length = readInt();
    const size_t words = (static_cast<size_t>(std::max(length, 0)) + kWord - 1) / kWord;
    if (length < 0 || words > remaining()) {
        fail();
        return {};
    }
    if (length == 0)
        return {};
    const char* text = reinterpret_cast<const char*>(array.data() + at);
    at += words;
    return {text, strnlen(text, static_cast<size_t>(length))};
}

void KWChunk::readBytes(void* target, size_t bytes)
{
    std::memset(target, 0, bytes);
    for (size_t i = 0; i < bytes / kWord; ++i) {
        const uint32_t word = nextWord();
        std::memcpy(static_cast<char*>(target) + i * kWord, &word, kWord);
    }
}

void KWChunk::skipWords(size_t count)
{
    if (count > remaining()) {
        failAt(end);
        at = end;
        return;
    }
    at += count;
}

void KWChunk::beginMeasure() { clear(); }

void KWChunk::beginFill()
{
    array.assign(at, 0);
    end = at;
    at = 0;
    measureOnly = false;
}

void KWChunk::assign(const void* bytes, size_t byteCount)
{
    std::vector<uint32_t> copy(byteCount / kWord);
    if (!copy.empty())
        std::memcpy(copy.data(), bytes, copy.size() * kWord);
    assign(std::move(copy));
}

void KWChunk::assign(std::vector<uint32_t> newWords)
{
    clear();
    array = std::move(newWords);
    end = array.size();
    measureOnly = false;
}

void KWChunk::clear()
{
    array.clear();
    at = end = brokenAt = 0;
    broken = false;
    measureOnly = true;
}

void KWChunk::fail() { failAt(at > 0 ? at - 1 : 0); }

void KWChunk::failAt(size_t word)
{
    if (broken)
        return;
    broken = true;
    brokenAt = word;
}

bool KWChunk::readHeader()
{
    totalWords = readInt();
    version = readInt();
    tempo = readFloat();
    sampleRate = readFloat();
    return readInt() == kChunkMagic;
}

void KWChunk::writeHeader(int32_t programVersion)
{
    if (!measureOnly)
        totalWords = static_cast<int32_t>(array.size());
    version = programVersion;
    writeInt(totalWords);
    writeInt(version);
    writeFloat(tempo);
    writeFloat(sampleRate);
    writeInt(kChunkMagic);
}

ChunkLimit::ChunkLimit(KWChunk& limited, size_t count) : chunk(limited), outerEnd(limited.end)
{
    if (count > chunk.remaining()) {
        chunk.failAt(chunk.end);
        count = chunk.remaining();
    }
    next = chunk.at + count;
    chunk.end = next;
}

ChunkLimit::~ChunkLimit()
{
    chunk.end = outerEnd;
    chunk.at = next;
}

} // namespace ormund
