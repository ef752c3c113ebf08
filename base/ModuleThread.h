#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace ormund {

// One thread for all instances of a module, from the first add to the last remove. It does each
// client's work once a period. add and remove on any thread but the audio thread.
template <typename Client>
class ModuleThread {
public:
    using Work = void (*)(Client&); // must not add or remove

    ModuleThread(std::chrono::milliseconds ownPeriod, Work ownWork)
        : period(ownPeriod), work(ownWork)
    {
    }
    // A host may leave instances behind when it ends or lets the module go.
    ~ModuleThread() { end(); }
    ModuleThread(const ModuleThread&) = delete;
    ModuleThread& operator=(const ModuleThread&) = delete;

    // Once is enough. Without a thread, where the system gives none, nothing is done.
    void add(Client& client)
    {
        const std::lock_guard one(starting);
        const std::lock_guard hold(mutex);
        if (std::find(clients.begin(), clients.end(), &client) != clients.end())
            return;
        clients.push_back(&client);
        if (thread.joinable())
            return;
        ends = false;
        try {
            thread = std::thread([this] { run(); });
        } catch (const std::system_error&) {
        }
    }
    // After this the client is not called any more.
    void remove(Client& client)
    {
        const std::lock_guard one(starting);
        {
            const std::lock_guard hold(mutex);
            std::erase(clients, &client);
            if (!clients.empty())
                return;
        }
        end();
    }

private:
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
            for (Client* client : clients)
                work(*client);
            ending.wait_for(hold, period, [this] { return ends; });
        }
    }

    const std::chrono::milliseconds period;
    const Work work;
    std::mutex starting; // one starts or ends the thread at a time
    std::mutex mutex;    // for all below
    std::condition_variable ending;
    std::vector<Client*> clients;
    bool ends = false;
    std::thread thread;
};

} // namespace ormund
