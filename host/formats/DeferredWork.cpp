#include "host/formats/DeferredWork.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace ormund {

namespace {

struct Pool {
    // A host may leave instances behind when it ends or lets the module go.
    ~Pool() { end(); }

    std::mutex starting; // one starts or ends the thread at a time
    std::mutex mutex;    // for all below
    std::condition_variable ending;
    std::vector<DeferredWork::Client*> clients;
    bool ends = false;
    std::thread thread;

    void end()
    {
        {
            const std::lock_guard hold(mutex);
            ends = true;
        }
        ending.notify_one();
        if (thread.joinable())
            thread.join();
    }
    void run()
    {
        std::unique_lock hold(mutex);
        while (!ends) {
            for (DeferredWork::Client* client : clients)
                client->doDeferredWork();
            ending.wait_for(hold, std::chrono::milliseconds(DeferredWork::kPeriodMs));
        }
    }
};

Pool& pool()
{
    static Pool only;
    return only;
}

} // namespace

void DeferredWork::add(Client& client)
{
    Pool& all = pool();
    const std::lock_guard one(all.starting);
    const std::lock_guard hold(all.mutex);
    if (std::ranges::find(all.clients, &client) != all.clients.end())
        return;
    all.clients.push_back(&client);
    if (all.thread.joinable())
        return;
    all.ends = false;
    try {
        all.thread = std::thread([&all] { all.run(); });
    } catch (const std::system_error&) {
        // Without a thread the work waits for a window or for the state to be asked for.
    }
}

void DeferredWork::remove(Client& client)
{
    Pool& all = pool();
    const std::lock_guard one(all.starting);
    {
        const std::lock_guard hold(all.mutex);
        std::erase(all.clients, &client);
        if (!all.clients.empty())
            return;
    }
    all.end();
}

} // namespace ormund
