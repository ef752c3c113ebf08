#include "host/vst2/EditorFactory.h"

#include "editor/KWUniClientEditor.h"

AEffEditor* makeEditor(KWUniClient& client) { return new KWUniClientEditor(client); }
