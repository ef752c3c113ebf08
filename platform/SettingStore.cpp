#include "platform/SettingStore.h"

#include "platform/KWFileio.h"
#include "platform/Messages.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <ctime>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace ormund {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kAtOnce{0};
constexpr milliseconds kWriterPatience{500};
constexpr milliseconds kWriterPause{200};
constexpr std::chrono::seconds kPatienceAtTheEnd{3};

// Beside the old place. The name says when, and a number follows where that is taken.
std::string setAsideName(const std::string& path)
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::localtime_r(&now, &parts);
    char date[32] = "";
    std::strftime(date, sizeof date, ".%Y-%m-%d", &parts);
    std::string name = path + date;
    for (int number = 2; KWFileio::exists(name); ++number)
        name = path + date + "-" + std::to_string(number);
    return name;
}

void setAside(const std::string& path)
{
    // Somebody else may have done so meanwhile.
    static std::mutex oneAtATime;
    const std::lock_guard guard(oneAtATime);
    StoredSetting ignored;
    if (KeyValueStore(path).get("firstuse", ignored, kAtOnce) != StoreAnswer::Broken)
        return;
    const std::string aside = setAsideName(path);
    if (std::rename(path.c_str(), aside.c_str()) != 0)
        return;
    // What a write that was cut short left belongs to the old file.
    std::rename((path + "-journal").c_str(), (aside + "-journal").c_str());
    showMessage(
        "The settings could not be read. They are set aside as %s and begin from the start.",
        aside.c_str());
}

struct Wish {
    StoredSetting value;
    bool onlyIfMissing = false;
};
using Key = std::pair<std::string, std::string>; // file and key

// The answer of a store that was set aside is that of the new one.
StoreAnswer putNow(const Key& key, const Wish& wish, milliseconds patience)
{
    const KeyValueStore store(key.first);
    StoreAnswer answer = store.put(key.second.c_str(), wish.value, patience, wish.onlyIfMissing);
    if (answer == StoreAnswer::Broken) {
        setAside(key.first);
        answer = store.put(key.second.c_str(), wish.value, patience, wish.onlyIfMissing);
    }
    return answer;
}

} // namespace

struct SettingStore::Shared {
    std::mutex lock;
    std::condition_variable changed;
    std::map<Key, Wish> wishes;         // not written yet
    std::map<Key, StoredSetting> known; // as last read or written
    int users = 0;
    bool over = false;    // nobody uses a store now: the writer has some seconds left
    bool writing = false; // from the writer's start until it needs the lock no more
    std::thread writer;

    ~Shared()
    {
        std::unique_lock guard(lock);
        users = 0;
        end(guard);
    }
    // All with `lock` held.
    void begin()
    {
        if (writing)
            changed.notify_all();
        else {
            joinIfDone();
            writing = true;
            writer = std::thread([this] { work(); });
        }
    }
    // Returns early when somebody begins to use a store meanwhile; the writer then goes on.
    void end(std::unique_lock<std::mutex>& guard)
    {
        over = true;
        changed.notify_all();
        changed.wait(guard, [this] { return !writing || users > 0; });
        joinIfDone();
    }
    void joinIfDone()
    {
        if (!writing && writer.joinable())
            writer.join();
    }
    void work();
};

void SettingStore::Shared::work()
{
    using Moment = std::chrono::steady_clock;
    std::unique_lock guard(lock);
    Moment::time_point last = Moment::time_point::max();
    while (true) {
        changed.wait(guard, [this] { return over || !wishes.empty(); });
        if (!over)
            last = Moment::time_point::max();
        else if (last == Moment::time_point::max())
            last = Moment::now() + kPatienceAtTheEnd;
        if (over && (wishes.empty() || Moment::now() > last))
            break;
        const auto [key, wish] = *wishes.begin();
        guard.unlock();
        const StoreAnswer answer = putNow(key, wish, kWriterPatience);
        guard.lock();
        if (answer == StoreAnswer::Busy) {
            changed.wait_for(guard, kWriterPause);
            continue;
        }
        // A newer value may have come meanwhile.
        const auto now = wishes.find(key);
        if (now != wishes.end() && now->second.value == wish.value)
            wishes.erase(now);
    }
    wishes.clear();
    writing = false;
    changed.notify_all();
}

SettingStore::Shared& SettingStore::shared()
{
    static Shared instance;
    return instance;
}

SettingStore::SettingStore(std::string filePath) : path(std::move(filePath))
{
    Shared& all = shared();
    const std::lock_guard guard(all.lock);
    ++all.users;
    all.over = false;
    all.changed.notify_all();
}

SettingStore::~SettingStore()
{
    Shared& all = shared();
    std::unique_lock guard(all.lock);
    if (--all.users == 0)
        all.end(guard);
}

size_t SettingStore::waiting()
{
    const std::lock_guard guard(shared().lock);
    return shared().wishes.size();
}

bool SettingStore::read(const char* key, StoredSetting& value) const
{
    Shared& all = shared();
    const Key place{path, key};
    {
        const std::lock_guard guard(all.lock);
        if (const auto wish = all.wishes.find(place);
            wish != all.wishes.end() && !wish->second.onlyIfMissing) {
            value = wish->second.value;
            return true;
        }
    }
    const KeyValueStore store(path);
    StoreAnswer answer = store.get(key, value, kAtOnce);
    if (answer == StoreAnswer::Broken) {
        setAside(path);
        answer = store.get(key, value, kAtOnce);
    }
    const std::lock_guard guard(all.lock);
    if (answer == StoreAnswer::Done) {
        all.known[place] = value;
        return true;
    }
    const auto known = all.known.find(place);
    if (answer != StoreAnswer::Busy || known == all.known.end())
        return false;
    value = known->second;
    return true;
}

bool SettingStore::write(const char* key, StoredSetting value, bool onlyIfMissing) const
{
    if (path.empty())
        return false;
    Shared& all = shared();
    const Key place{path, key};
    const Wish wish{std::move(value), onlyIfMissing};
    bool mustWait = false;
    {
        const std::lock_guard guard(all.lock);
        mustWait = !all.wishes.empty(); // the writer is at it, and values keep their order
    }
    const StoreAnswer answer = mustWait ? StoreAnswer::Busy : putNow(place, wish, kAtOnce);
    const std::lock_guard guard(all.lock);
    if (answer == StoreAnswer::Failed)
        return false;
    if (answer == StoreAnswer::Busy) {
        if (!onlyIfMissing || !all.wishes.contains(place))
            all.wishes[place] = wish;
        all.begin();
    }
    if (!onlyIfMissing)
        all.known[place] = wish.value;
    return true;
}

bool SettingStore::readString(const char* key, std::string& value) const
{
    StoredSetting stored;
    if (!read(key, stored) || !std::holds_alternative<std::string>(stored))
        return false;
    value = std::get<std::string>(stored);
    return true;
}

bool SettingStore::readInt(const char* key, int32_t& value) const
{
    StoredSetting stored;
    if (!read(key, stored) || !std::holds_alternative<int32_t>(stored))
        return false;
    value = std::get<int32_t>(stored);
    return true;
}

bool SettingStore::writeString(const char* key, const std::string& value) const
{
    return write(key, value, false);
}

bool SettingStore::writeInt(const char* key, int32_t value) const
{
    return write(key, value, false);
}

bool SettingStore::addString(const char* key, const std::string& value) const
{
    return write(key, value, true);
}

bool SettingStore::addInt(const char* key, int32_t value) const { return write(key, value, true); }

} // namespace ormund
