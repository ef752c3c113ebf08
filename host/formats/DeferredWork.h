// Does what a running instance has left to be done and no call of its host does: LV2, VST3 and CLAP
// promise no idle while no window shows.
#pragma once

namespace ormund {

// One thread for all instances of the module, running from the first add to the last remove; it
// looks at each of them every kPeriodMs. add and remove on any thread but the audio thread.
class DeferredWork {
public:
    static constexpr int kPeriodMs = 50;

    class Client {
    public:
        virtual void doDeferredWork() = 0; // must not add or remove

    protected:
        ~Client() = default;
    };

    static void add(Client& client); // once is enough
    // After this the client is not called any more.
    static void remove(Client& client);
};

} // namespace ormund
