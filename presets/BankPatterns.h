// The patterns of a song while its source is read, and the chain that plays them.
#pragma once

#include "data/state/DetachedSong.h"
#include "presets/Score.h"

#include <array>
#include <bitset>
#include <string>
#include <vector>

namespace ormund {

class BankPatterns {
public:
    explicit BankPatterns(DetachedSong& filled);

    // Before the first pattern for all of them, later for the last one.
    void setRaw(int tag, float raw);
    void setKey(int note, const std::string& text);
    void keepMods();
    void line(const std::string& word, const BankTokens& values);
    // What had to wait: the chain, modulation tracks that some patterns do not write, patterns
    // beyond the last.
    void finish();

private:
    struct Written {
        std::string name;
        Score score;
        float legato = 0;
        int keyNote = 60;
        std::bitset<kModTracks> mods;
    };
    void next(const BankTokens& values);
    void copyPattern(int from, int to);
    bool scoreLine(const std::string& word, const BankTokens& values);
    void writeScore(const std::string& word);
    void row(const std::string& word, const BankTokens& values);
    void mod(const BankTokens& values);
    void drum(int track, const BankTokens& values);
    void loop(const BankTokens& values);
    void steps(int count);
    void chain();
    void fillTable(KWTableXY& table, const std::vector<float>& values);
    int degreeOf(int note) const;
    int indexOf(const std::string& name) const;
    int choiceOf(int tag) const; // of a pattern's own parameter in the last pattern
    float patternValue(int tag, int pattern) const;

    DetachedSong& song;
    std::array<Written, kPatterns> written{};
    BankTokens chainWords;
    int pattern = -1;
    bool keepsMods = false;
    std::bitset<kModTracks> switched; // on or off by a word of the source
};

} // namespace ormund
