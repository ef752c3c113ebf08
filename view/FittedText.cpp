#include "view/FittedText.h"

#include <algorithm>
#include <vector>

namespace ormund {

namespace {

constexpr size_t kShortest = 3; // letters of an abbreviated word

bool beginsLetter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

size_t lettersOf(std::string_view word)
{
    return static_cast<size_t>(std::ranges::count_if(word, beginsLetter));
}

void dropLastLetter(std::string& word)
{
    while (!word.empty() && !beginsLetter(word.back()))
        word.pop_back();
    if (!word.empty())
        word.pop_back();
}

struct Word {
    std::string letters;
    bool isAbbreviated = false;

    // How many letters it has beyond the fewest; a point for a single letter is no gain.
    size_t spare() const
    {
        const size_t count = lettersOf(letters);
        return count > kShortest + (isAbbreviated ? 0 : 1) ? count - kShortest : 0;
    }
    void shorten()
    {
        dropLastLetter(letters);
        if (!isAbbreviated)
            dropLastLetter(letters);
        isAbbreviated = true;
    }
};

std::vector<Word> wordsOf(std::string_view text)
{
    std::vector<Word> words;
    bool inWord = false;
    for (const char byte : text) {
        if (byte != ' ' && !inWord)
            words.emplace_back();
        inWord = byte != ' ';
        if (inWord)
            words.back().letters.push_back(byte);
    }
    return words;
}

std::string joined(const std::vector<Word>& words)
{
    std::string text;
    for (const Word& word : words) {
        if (!text.empty())
            text.push_back(' ');
        text += word.letters;
        if (word.isAbbreviated)
            text.push_back('.');
    }
    return text;
}

} // namespace

std::string fittedText(
    std::string_view text, double room, const std::function<double(std::string_view)>& width)
{
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    if (width(text) <= room)
        return std::string(text);
    std::vector<Word> words = wordsOf(text);
    std::string shorter = joined(words);
    while (width(shorter) > room) {
        const auto longest = std::ranges::max_element(words, {}, &Word::spare);
        if (longest == words.end() || longest->spare() == 0)
            break;
        longest->shorten();
        shorter = joined(words);
    }
    if (width(shorter) <= room)
        return shorter;
    while (!shorter.empty() && width(shorter + "…") > room)
        dropLastLetter(shorter);
    while (!shorter.empty() && (shorter.back() == ' ' || shorter.back() == '.'))
        shorter.pop_back();
    return shorter.empty() ? std::string() : shorter + "…";
}

} // namespace ormund
