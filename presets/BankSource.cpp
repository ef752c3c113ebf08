#include "presets/BankSource.h"

#include "presets/BankPatterns.h"

#include <fstream>
#include <map>
#include <stdexcept>

namespace ormund {

namespace {

using Tokens = BankTokens;

// The value as its display shows it; 1/16 is "1 / 16".
float rawOf(int tag, const std::string& word, const std::string& text)
{
    std::string shown;
    for (const char c : text)
        shown += c == '/' ? std::string(" / ") : std::string(1, c);
    if (text.find(" / ") != std::string::npos)
        shown = text;
    if (const auto raw = parameterFromText(tag, shown))
        return *raw;
    throw std::runtime_error(word + " has no choice " + text);
}

std::string restOf(const std::string& text, const std::string& word)
{
    const size_t start = text.find_first_not_of(" \t", text.find(word) + word.size());
    const size_t end = text.find_last_not_of(" \t\r");
    return start == std::string::npos ? "" : text.substr(start, end + 1 - start);
}

class Source {
public:
    Source(DetachedSong& filled, std::string sourceRoot)
        : song(filled), patterns(filled), root(std::move(sourceRoot))
    {
    }

    void finish() { patterns.finish(); }

    void readFile(const std::string& path)
    {
        std::ifstream file(path);
        if (!file)
            throw std::runtime_error(path + ": cannot be read");
        std::string text;
        for (int n = 1; std::getline(file, text); ++n) {
            try {
                line(text);
            } catch (const std::exception& reason) {
                const std::string what = reason.what();
                throw std::runtime_error(what.find(".txt:") != std::string::npos
                        ? what
                        : path + ":" + std::to_string(n) + ": " + what);
            }
        }
    }

    BankAbout about;

private:
    void line(const std::string& text)
    {
        const Tokens tokens = splitBankLine(text);
        if (tokens.empty())
            return;
        const std::string& word = tokens[0];
        const Tokens values(tokens.begin() + 1, tokens.end());
        if (values.empty() && word != "pattern" && word != "invert")
            throw std::runtime_error(word + " needs a value");
        if (!ofSong(word, values, text))
            patterns.line(word, values);
    }

    bool ofSong(const std::string& word, const Tokens& values, const std::string& text)
    {
        if (word == "set")
            set(values);
        else if (word == "scale" || word == "speed" || word == "swing" || word == "walk")
            setShown(word, restOf(text, word));
        else if (word == "about")
            about.line = restOf(text, word);
        else if (word == "tags")
            about.tags = restOf(text, word);
        else if (word == "tempo")
            song.info.setTempo(about.tempo = static_cast<double>(bankNumber(values[0])));
        else if (word == "key")
            patterns.setKey(bankNote(values[0]).value_or(-1), values[0]);
        else if (word == "synth")
            readFile(root + "/synth/" + restOf(text, word) + ".txt");
        else if (word == "mods" && values[0] == "default")
            patterns.keepMods();
        else if (word == "learn")
            learn(values);
        else
            return false;
        return true;
    }

    void set(const Tokens& values)
    {
        if (values.size() != 2)
            throw std::runtime_error("set takes a word and a value");
        const int tag = bankParameter(values[0]);
        patterns.setRaw(tag,
            values[1][0] == '"' ? rawOf(tag, values[0], values[1].substr(1))
                                : bankNumber(values[1]));
    }

    void setShown(const std::string& word, const std::string& text)
    {
        const int tag = bankParameter(word);
        patterns.setRaw(tag, word == "swing" ? bankNumber(text) : rawOf(tag, word, text));
    }

    void learn(const Tokens& values)
    {
        if (values.size() < 2)
            throw std::runtime_error("learn takes a controller and a word");
        const int step = values.size() > 2 ? static_cast<int>(bankNumber(values[2])) : 0;
        const int tag = values[1] == "velocity" ? Tag::Velocity
            : values[1] == "pitch"              ? Tag::Pitch
                                                : bankParameter(values[1]);
        song.midiMap.addAssignment(static_cast<int>(bankNumber(values[0])), tag, step);
    }

    DetachedSong& song;
    BankPatterns patterns;
    std::string root;
};

} // namespace

bool readBankSource(const std::string& path, const std::string& root, DetachedSong& song,
    std::string& error, BankAbout* about)
{
    try {
        Source source(song, root);
        source.readFile(path);
        try {
            source.finish();
        } catch (const std::exception& reason) {
            throw std::runtime_error(path + ": " + reason.what());
        }
        if (about)
            *about = source.about;
        return true;
    } catch (const std::exception& reason) {
        error = reason.what();
        return false;
    }
}

} // namespace ormund
