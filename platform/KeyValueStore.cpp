#include "platform/KeyValueStore.h"

#include "platform/KWFileio.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <sqlite3.h>
#include <thread>

namespace ormund {

namespace {

constexpr auto kPatience = std::chrono::seconds(3);
constexpr auto kPause = std::chrono::microseconds(1500);
// Longer than a waiter's pause: a program that writes again and again starves nobody.
constexpr auto kOpenDoor = std::chrono::microseconds(2000);
constexpr auto kGiveUp = std::chrono::seconds(30);
constexpr size_t kMostText = 65536;

using Clock = std::chrono::steady_clock;
using Database = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

// Short even pauses: the library's own grow longer and longer, so that a busy writer starves the
// others.
int waitForLock(void* deadline, int attempts)
{
    auto& end = *static_cast<Clock::time_point*>(deadline);
    if (attempts == 0)
        end = Clock::now() + kPatience;
    if (Clock::now() >= end)
        return 0;
    std::this_thread::sleep_for(kPause);
    return 1;
}

// A store that another program holds locked costs the user one wait, not one for every key.
std::atomic<Clock::rep> lockedUntil{0};

bool isGivenUp() { return Clock::now().time_since_epoch().count() < lockedUntil.load(); }

void noteAnswer(int answer)
{
    if ((answer & 0xFF) == SQLITE_BUSY || (answer & 0xFF) == SQLITE_LOCKED)
        lockedUntil = (Clock::now() + kGiveUp).time_since_epoch().count();
}

Database openStore(const std::string& path, bool create)
{
    Database none(nullptr, &sqlite3_close);
    if (path.empty() || isGivenUp())
        return none;
    if (create && !KWFileio::makeFolder(KWFileio::folderOf(path)))
        return none;
    sqlite3* opened = nullptr;
    const int flags = create ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE : SQLITE_OPEN_READWRITE;
    const int answer =
        sqlite3_open_v2(path.c_str(), &opened, flags | SQLITE_OPEN_FULLMUTEX, nullptr);
    Database store(opened, &sqlite3_close);
    if (answer != SQLITE_OK)
        return none;
    thread_local Clock::time_point deadline;
    sqlite3_busy_handler(opened, waitForLock, &deadline);
    return store;
}

Statement prepare(sqlite3* store, const char* text)
{
    sqlite3_stmt* prepared = nullptr;
    noteAnswer(sqlite3_prepare_v2(store, text, -1, &prepared, nullptr));
    return {prepared, &sqlite3_finalize};
}

bool run(sqlite3* store, const char* text)
{
    const int answer = sqlite3_exec(store, text, nullptr, nullptr, nullptr);
    noteAnswer(answer);
    return answer == SQLITE_OK;
}

// `take` reads column 0 of the one row; false when there is none.
template <typename Take>
bool readValue(const std::string& path, const char* key, Take take)
{
    if (!KWFileio::exists(path))
        return false;
    const Database store = openStore(path, false);
    if (!store)
        return false;
    const Statement query = prepare(store.get(), "SELECT value FROM settings WHERE key = ?1");
    if (!query || sqlite3_bind_text(query.get(), 1, key, -1, SQLITE_STATIC) != SQLITE_OK)
        return false;
    const int answer = sqlite3_step(query.get());
    noteAnswer(answer);
    return answer == SQLITE_ROW && take(query.get());
}

template <typename Bind>
bool writeOnce(const std::string& path, const char* key, Bind bind)
{
    const Database store = openStore(path, true);
    if (!store)
        return false;
    // Taken at once, so that two writers wait for each other instead of meeting half-way.
    if (!run(store.get(), "BEGIN IMMEDIATE"))
        return false;
    const auto put = [&] {
        if (!run(store.get(),
                "CREATE TABLE IF NOT EXISTS settings"
                " (key TEXT PRIMARY KEY NOT NULL, value)"))
            return false;
        const Statement statement = prepare(store.get(),
            "INSERT INTO settings (key, value) VALUES (?1, ?2)"
            " ON CONFLICT (key) DO UPDATE SET value = excluded.value");
        return statement
            && sqlite3_bind_text(statement.get(), 1, key, -1, SQLITE_STATIC) == SQLITE_OK
            && bind(statement.get()) == SQLITE_OK && sqlite3_step(statement.get()) == SQLITE_DONE;
    };
    if (put())
        return run(store.get(), "COMMIT");
    run(store.get(), "ROLLBACK");
    return false;
}

template <typename Bind>
bool writeValue(const std::string& path, const char* key, Bind bind)
{
    const bool written = writeOnce(path, key, bind);
    std::this_thread::sleep_for(kOpenDoor);
    return written;
}

} // namespace

bool KeyValueStore::readString(const char* key, std::string& value) const
{
    return readValue(path, key, [&value](sqlite3_stmt* row) {
        if (sqlite3_column_type(row, 0) != SQLITE_TEXT)
            return false;
        const auto bytes = static_cast<size_t>(sqlite3_column_bytes(row, 0));
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, 0));
        if (!text || bytes > kMostText)
            return false;
        value.assign(text, bytes);
        return true;
    });
}

bool KeyValueStore::writeString(const char* key, const std::string& value) const
{
    return writeValue(path, key, [&value](sqlite3_stmt* row) {
        return sqlite3_bind_text(
            row, 2, value.c_str(), static_cast<int>(value.size()), SQLITE_STATIC);
    });
}

bool KeyValueStore::readInt(const char* key, int32_t& value) const
{
    return readValue(path, key, [&value](sqlite3_stmt* row) {
        if (sqlite3_column_type(row, 0) != SQLITE_INTEGER)
            return false;
        value = sqlite3_column_int(row, 0);
        return true;
    });
}

bool KeyValueStore::writeInt(const char* key, int32_t value) const
{
    return writeValue(
        path, key, [value](sqlite3_stmt* row) { return sqlite3_bind_int(row, 2, value); });
}

} // namespace ormund
