// A song that keeps everything busy: for tests and benchmarks of cost.
#pragma once

namespace ormund {

class KWUniClient;

// Song mode over eight patterns, swing, a chord of four notes at every step that outlasts the steps
// behind it, so that all eight voices sound, and the eight modulation tracks moving.
void writeBusySong(KWUniClient& client);

} // namespace ormund
