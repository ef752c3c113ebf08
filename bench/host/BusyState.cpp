#include "bench/host/Instrument.h"
#include "data/parameters/Tags.h"
#include "host/plugin/KWUniClient.h"
#include "tests/support/BusySong.h"

namespace ormund {

std::string busyState(bool withSynth)
{
    KWUniClient client(nullptr);
    writeBusySong(client);
    client.setParameter(Tag::SynthOn, withSynth ? 1.0f : 0.0f);
    void* bytes = nullptr;
    const VstInt32 size = client.getChunk(&bytes, false);
    return {static_cast<const char*>(bytes), static_cast<size_t>(size)};
}

} // namespace ormund
