#include "host/formats/DeferredWork.h"

#include "base/ModuleThread.h"

namespace ormund {

namespace {

// Without a thread the work waits for a window or for the state to be asked for.
ModuleThread<DeferredWork::Client>& pool()
{
    static ModuleThread<DeferredWork::Client> only(
        std::chrono::milliseconds(DeferredWork::kPeriodMs),
        [](DeferredWork::Client& client) { client.doDeferredWork(); });
    return only;
}

} // namespace

void DeferredWork::add(Client& client) { pool().add(client); }

void DeferredWork::remove(Client& client) { pool().remove(client); }

} // namespace ormund
