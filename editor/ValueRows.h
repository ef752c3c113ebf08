#pragma once

namespace ormund {

class KWUniClient;

// Fills the rows under the grids, which show as words what the bars above them are: the note of a
// pitch step, the length of a gate step, the controller value of the chosen modulation track.
// Screen thread; a step is written only when it differs, so that an idle costs no redraw.
void fillValueRows(KWUniClient& engine);

} // namespace ormund
