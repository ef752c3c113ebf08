#include "host/vst2/EditorFactory.h"

AEffEditor* makeEditor(KWUniClient& /*client*/) { return nullptr; }
