#include "platform/KeyValueStore.h"

#include "platform/KWFileio.h"

#include <memory>
#include <sqlite3.h>
#include <thread>

namespace ormund {

namespace {

constexpr std::chrono::milliseconds kPatience{3000};
constexpr auto kPause = std::chrono::microseconds(1500);
// Longer than a waiter's pause: a program that writes again and again starves nobody.
constexpr auto kOpenDoor = std::chrono::microseconds(2000);
constexpr size_t kMostText = 65536;

using Clock = std::chrono::steady_clock;
using Database = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

// Short even pauses: the library's own grow longer and longer, so that a busy writer starves the
// others.
int waitForLock(void* deadline, int /*attempts*/)
{
    if (Clock::now() >= *static_cast<Clock::time_point*>(deadline))
        return 0;
    std::this_thread::sleep_for(kPause);
    return 1;
}

StoreAnswer answerOf(int code)
{
    switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return StoreAnswer::Done;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return StoreAnswer::Busy;
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
    case SQLITE_ERROR: // a statement that does not fit the tables
        return StoreAnswer::Broken;
    default:
        return StoreAnswer::Failed;
    }
}

// One open file. What happens first counts.
class OpenStore {
public:
    OpenStore(const std::string& path, bool create, std::chrono::milliseconds patience)
        : deadline(Clock::now() + patience)
    {
        if (path.empty() || KWFileio::isFolder(path)
            || (create && !KWFileio::makeFolder(KWFileio::folderOf(path)))) {
            first = StoreAnswer::Failed;
            return;
        }
        sqlite3* opened = nullptr;
        const int flags =
            create ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE : SQLITE_OPEN_READWRITE;
        note(sqlite3_open_v2(path.c_str(), &opened, flags | SQLITE_OPEN_FULLMUTEX, nullptr));
        store.reset(opened);
        if (opened)
            sqlite3_busy_handler(opened, waitForLock, &deadline);
    }
    OpenStore(const OpenStore&) = delete;
    OpenStore& operator=(const OpenStore&) = delete;

    bool isGood() const { return first == StoreAnswer::Done; }
    StoreAnswer answer() const { return first; }
    int note(int code)
    {
        if (isGood())
            first = answerOf(code);
        return code;
    }
    bool run(const char* text)
    {
        return note(sqlite3_exec(store.get(), text, nullptr, nullptr, nullptr)) == SQLITE_OK;
    }
    Statement prepare(const char* text, const char* key)
    {
        sqlite3_stmt* prepared = nullptr;
        note(sqlite3_prepare_v2(store.get(), text, -1, &prepared, nullptr));
        if (prepared)
            note(sqlite3_bind_text(prepared, 1, key, -1, SQLITE_STATIC));
        return {prepared, &sqlite3_finalize};
    }
    // No table at all: a file that was only just made.
    bool isEmpty()
    {
        sqlite3_stmt* prepared = nullptr;
        const int code = sqlite3_prepare_v2(
            store.get(), "SELECT count(*) FROM sqlite_master", -1, &prepared, nullptr);
        const Statement count(prepared, &sqlite3_finalize);
        return code == SQLITE_OK && sqlite3_step(prepared) == SQLITE_ROW
            && sqlite3_column_int(prepared, 0) == 0;
    }

private:
    Clock::time_point deadline;
    Database store{nullptr, &sqlite3_close};
    StoreAnswer first = StoreAnswer::Done;
};

bool takeRow(sqlite3_stmt* row, StoredSetting& value)
{
    switch (sqlite3_column_type(row, 0)) {
    case SQLITE_INTEGER:
        value = sqlite3_column_int(row, 0);
        return true;
    case SQLITE_TEXT: {
        const auto bytes = static_cast<size_t>(sqlite3_column_bytes(row, 0));
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, 0));
        if (!text || bytes > kMostText)
            return false;
        value = std::string(text, bytes);
        return true;
    }
    default:
        return false;
    }
}

int bindValue(sqlite3_stmt* row, const StoredSetting& value)
{
    if (const auto* text = std::get_if<std::string>(&value))
        return sqlite3_bind_text(
            row, 2, text->c_str(), static_cast<int>(text->size()), SQLITE_STATIC);
    return sqlite3_bind_int(row, 2, std::get<int32_t>(value));
}

constexpr char kMakeTable[] = "CREATE TABLE IF NOT EXISTS settings"
                              " (key TEXT PRIMARY KEY NOT NULL, value)";
constexpr char kReplace[] = "INSERT INTO settings (key, value) VALUES (?1, ?2)"
                            " ON CONFLICT (key) DO UPDATE SET value = excluded.value";
constexpr char kAdd[] = "INSERT INTO settings (key, value) VALUES (?1, ?2)"
                        " ON CONFLICT (key) DO NOTHING";

} // namespace

StoreAnswer KeyValueStore::get(
    const char* key, StoredSetting& value, std::chrono::milliseconds patience) const
{
    if (!KWFileio::exists(path))
        return StoreAnswer::Missing;
    OpenStore store(path, false, patience);
    if (!store.isGood())
        return store.answer();
    const Statement query = store.prepare("SELECT value FROM settings WHERE key = ?1", key);
    if (!store.isGood())
        return store.answer() == StoreAnswer::Broken && store.isEmpty() ? StoreAnswer::Missing
                                                                        : store.answer();
    const int step = store.note(sqlite3_step(query.get()));
    if (!store.isGood())
        return store.answer();
    return step == SQLITE_ROW && takeRow(query.get(), value) ? StoreAnswer::Done
                                                             : StoreAnswer::Missing;
}

StoreAnswer KeyValueStore::put(const char* key, const StoredSetting& value,
    std::chrono::milliseconds patience, bool onlyIfMissing) const
{
    OpenStore store(path, true, patience);
    // Taken at once, so that two writers wait for each other instead of meeting half-way.
    if (!store.isGood() || !store.run("BEGIN IMMEDIATE"))
        return store.answer();
    const auto putIt = [&] {
        const bool isNew = store.isEmpty();
        if (isNew && !store.run(kMakeTable))
            return;
        const Statement statement = store.prepare(onlyIfMissing ? kAdd : kReplace, key);
        if (store.isGood())
            store.note(bindValue(statement.get(), value));
        if (store.isGood())
            store.note(sqlite3_step(statement.get()));
    };
    putIt();
    if (store.isGood())
        store.run("COMMIT");
    // A transaction that stays open ends with the file.
    return store.answer();
}

bool KeyValueStore::readString(const char* key, std::string& value) const
{
    StoredSetting stored;
    if (get(key, stored, kPatience) != StoreAnswer::Done
        || !std::holds_alternative<std::string>(stored))
        return false;
    value = std::get<std::string>(stored);
    return true;
}

bool KeyValueStore::readInt(const char* key, int32_t& value) const
{
    StoredSetting stored;
    if (get(key, stored, kPatience) != StoreAnswer::Done
        || !std::holds_alternative<int32_t>(stored))
        return false;
    value = std::get<int32_t>(stored);
    return true;
}

bool KeyValueStore::writeString(const char* key, const std::string& value) const
{
    const bool written = put(key, value, kPatience) == StoreAnswer::Done;
    std::this_thread::sleep_for(kOpenDoor);
    return written;
}

bool KeyValueStore::writeInt(const char* key, int32_t value) const
{
    const bool written = put(key, value, kPatience) == StoreAnswer::Done;
    std::this_thread::sleep_for(kOpenDoor);
    return written;
}

} // namespace ormund
