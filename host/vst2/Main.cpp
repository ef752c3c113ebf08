// The one name that the module exports.
#include "host/plugin/KWUniClient.h"
#include "host/vst2/EditorFactory.h"

#include <memory>

using namespace ormund;

// Makes one instance; the host ends it by effClose. `host` may be null: the instance then runs
// without one. Null when there is no memory for it, since nothing may throw into a host.
extern "C" __attribute__((visibility("default"))) AEffect* VSTPluginMain(audioMasterCallback host)
{
    try {
        auto client = std::make_unique<KWUniClient>(host);
        client->setEditor(makeEditor(*client));
        return client.release()->getAeffect();
    } catch (...) {
        return nullptr;
    }
}
