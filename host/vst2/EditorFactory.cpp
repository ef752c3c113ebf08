#include "host/vst2/EditorFactory.h"

#include "editor/KWUniClientEditor.h"

namespace ormund {

AEffEditor* makeEditor(KWUniClient& client) { return new KWUniClientEditor(client); }

} // namespace ormund
