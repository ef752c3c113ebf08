// The rhythms of the arpeggio and the order in which it walks its four notes.
#pragma once

namespace ormund {

constexpr int kRhythms = 6;
constexpr int kSubSteps = 4;
constexpr int kArpeggioFamilies = 3; // of the track's 18 entries: a family has the six rhythms

// The velocity factor of sub-step 0 to 3, row 1 to 6; 0 is a rest. Two neighbours that both sound
// always differ a little, because a note starts on a change of the factor. Clamped to the table.
float arpeggioGate(int row, int sub);
// Which of the four notes, 0 to 3, plays at a sub-step. `rhythm` 0 to 6.
int arpeggioSelect(int sub, int rhythm);

} // namespace ormund
