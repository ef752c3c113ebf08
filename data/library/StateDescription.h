// What a file of states, presets or controllers holds, word by word, as far as it can be read.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace ormund {

// A group of words and what it means. The hexadecimal walk of the documentation is made of these.
struct WordNote {
    size_t word = 0; // from the start of the file
    size_t count = 1;
    std::string type; // "i", "f" or "s": whole number, float, string
    std::string meaning;
};

class StateDescription {
public:
    // `extension` kwe, kws or kwm decides what the words do not say.
    StateDescription(const std::vector<uint32_t>& words, const std::string& extension);
    ~StateDescription();
    StateDescription(StateDescription&&) noexcept;

    // An object of the file's parts in their order; "broken" at its end names the word and the
    // reason where reading had to stop.
    std::string json() const;
    std::string text() const; // the same for people
    bool isBroken() const { return !reason.empty(); }
    std::string problem() const; // one line for the user; empty for none
    size_t brokenWord() const { return broken; }
    const std::vector<WordNote>& notes() const { return words; }

private:
    class Walk;
    nlohmann::ordered_json* root; // owned; behind a pointer, as the header knows only its name
    std::vector<WordNote> words;
    std::string reason;
    size_t broken = 0;
};

// Reads the whole file, or gives a reason.
bool readWords(const std::string& path, std::vector<uint32_t>& words, std::string& problem);

} // namespace ormund
