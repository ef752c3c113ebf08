// Where the engine gets its window: the engine itself knows no editor.
#pragma once

namespace ormund {

class AEffEditor;
class KWUniClient;

// The caller owns the editor. Null where the module is built without one.
AEffEditor* makeEditor(KWUniClient& client);

} // namespace ormund
