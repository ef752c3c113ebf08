// What a new instance plays.
#pragma once

namespace ormund {

class PatternStore;
class Tracks;

// Sixteen patterns, their stored values, their loops and a chain of eight. Not on the audio thread.
void writeFactoryContent(Tracks& tracks, PatternStore& store);

} // namespace ormund
