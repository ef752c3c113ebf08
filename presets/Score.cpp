#include "presets/Score.h"

#include <algorithm>
#include <stdexcept>

namespace ormund {

namespace {

constexpr float kLoud = 0.95f;
constexpr float kGhost = 0.4f;
constexpr float kTenth = 0.1f;

// The marks behind a note, taken off its end.
ScoreNote noteOf(std::string token, const Score::DegreeOf& degreeOf)
{
    ScoreNote note{.length = 1};
    for (bool isMark = true; isMark && !token.empty();) {
        const char mark = token.back();
        isMark = mark == '!' || mark == '?' || mark == '\'';
        if (mark == '!')
            note.velocity = kLoud;
        if (mark == '?')
            note.velocity = kGhost;
        note.isShort = note.isShort || mark == '\'';
        if (isMark)
            token.pop_back();
    }
    if (const size_t colon = token.find(':'); colon != std::string::npos) {
        note.chord = bankChord(token.substr(colon + 1));
        token.resize(colon);
    }
    const auto pitch = bankNote(token);
    if (!pitch)
        throw std::runtime_error(token + " is no note");
    note.degree = degreeOf(*pitch);
    return note;
}

} // namespace

void Score::write(const BankTokens& tokens, int first, const DegreeOf& degreeOf)
{
    isWritten = true;
    std::vector<ScoreNote> written;
    std::vector<bool> goesOn;
    for (const std::string& token : tokens) {
        if (token == "|")
            continue;
        goesOn.push_back(token == "-");
        written.push_back(token == "." || token == "-" ? ScoreNote() : noteOf(token, degreeOf));
    }
    if (written.empty() || first < 0 || first + static_cast<int>(written.size()) > kSteps)
        throw std::runtime_error("a pattern has 32 steps");
    const size_t count = first > 0 ? written.size() : static_cast<size_t>(kSteps);
    size_t sounding = static_cast<size_t>(kSteps);
    for (size_t i = 0; i < count; ++i) {
        const size_t step = static_cast<size_t>(first) + i;
        const size_t from = i % written.size();
        notes[step] = written[from];
        if (!goesOn[from])
            sounding = notes[step].length > 0 ? step : static_cast<size_t>(kSteps);
        else if (sounding < static_cast<size_t>(kSteps))
            ++notes[sounding].length;
    }
    tidy();
}

void Score::transpose(int degrees)
{
    for (ScoreNote& note : notes)
        note.degree += degrees;
}

void Score::invert()
{
    for (ScoreNote& note : notes)
        note.degree = -note.degree;
}

void Score::reverse(int steps)
{
    // A note that lasts begins where it ended.
    std::array<ScoreNote, kSteps> turned{};
    for (int step = 0; step < kSteps; ++step) {
        const ScoreNote& note = at(step);
        if (note.length == 0)
            continue;
        const int last = step + note.length - 1;
        const int to = step < steps ? std::max(0, steps - 1 - last) : step;
        turned[static_cast<size_t>(to)] = note;
    }
    notes = turned;
    tidy();
}

void Score::rotate(int by, int steps)
{
    const int wanted = std::clamp(steps, 1, kSteps);
    const int turn = ((by % wanted) + wanted) % wanted;
    std::rotate(notes.begin(), notes.begin() + (wanted - turn), notes.begin() + wanted);
    tidy();
}

void Score::thin(int every)
{
    int seen = 0;
    for (ScoreNote& note : notes)
        if (note.length > 0 && seen++ % std::max(every, 1) != 0)
            note = ScoreNote();
}

void Score::rest(int first, int last)
{
    for (int step = std::max(first, 0); step <= std::min(last, kSteps - 1); ++step)
        notes[static_cast<size_t>(step)] = ScoreNote();
    for (int step = 0; step < first; ++step)
        if (ScoreNote& note = notes[static_cast<size_t>(step)]; note.length > first - step)
            note.length = first - step;
}

void Score::shorten(int most)
{
    for (ScoreNote& note : notes)
        note.length = std::min(note.length, most);
}

void Score::accent(const std::string& digits)
{
    for (const char c : digits)
        if (c != '.' && (c < '1' || c > '9'))
            throw std::runtime_error("an accent is a digit from 1 to 9 or a dot");
    accents = digits;
    for (int step = 0; step < kSteps; ++step)
        if (accents[static_cast<size_t>(step) % accents.size()] != '.')
            notes[static_cast<size_t>(step)].velocity = 0;
}

float Score::velocityAt(int step) const
{
    const ScoreNote& note = at(step);
    if (note.length == 0)
        return 0;
    if (note.velocity > 0)
        return note.velocity;
    const char digit = accents[static_cast<size_t>(step) % accents.size()];
    return kTenth * static_cast<float>(digit == '.' ? 7 : digit - '0');
}

int Score::longest() const
{
    int most = 1;
    for (const ScoreNote& note : notes)
        most = std::max(most, note.length);
    return most;
}

void Score::tidy()
{
    int next = kSteps;
    for (int step = kSteps - 1; step >= 0; --step) {
        ScoreNote& note = notes[static_cast<size_t>(step)];
        if (note.length == 0)
            continue;
        note.length = std::min(note.length, next - step);
        next = step;
    }
}

} // namespace ormund
