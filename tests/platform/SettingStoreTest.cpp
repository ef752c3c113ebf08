// Settings while another program holds the file, and where the file is none.
#include "platform/SettingStore.h"
#include "platform/KWFileio.h"
#include "platform/Messages.h"
#include "tests/platform/TestFolder.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <thread>

namespace ormund {

namespace {

// What another program would be.
class Holder {
public:
    explicit Holder(const std::string& path)
    {
        sqlite3_open(path.c_str(), &store);
        run("BEGIN EXCLUSIVE");
    }
    ~Holder() { release(); }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;
    void release()
    {
        if (store)
            run("COMMIT");
        sqlite3_close(store);
        store = nullptr;
    }
    void run(const char* text) { sqlite3_exec(store, text, nullptr, nullptr, nullptr); }

private:
    sqlite3* store = nullptr;
};

int32_t stored(const std::string& path, const char* key)
{
    int32_t value = -1;
    KeyValueStore(path).readInt(key, value);
    return value;
}

} // namespace

TEST(SettingStore, WhileTheFileIsHeldValuesWaitAndNobodyWaitsForThem)
{
    const TestFolder folder;
    const std::string path = folder / "settings.db";
    const SettingStore store(path);
    ASSERT_TRUE(store.writeInt("old", 1));
    Holder holder(path);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 40; ++i)
        EXPECT_TRUE(store.writeInt(("key" + std::to_string(i)).c_str(), i));
    int32_t value = 0;
    EXPECT_TRUE(store.readInt("old", value)) << "as last known";
    EXPECT_TRUE(store.readInt("key39", value));
    EXPECT_EQ(value, 39);
    EXPECT_TRUE(store.addInt("old", 7));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_GT(SettingStore::waiting(), 0u);
    holder.release();
    for (int i = 0; i < 500 && SettingStore::waiting() > 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(stored(path, ("key" + std::to_string(i)).c_str()), i);
    EXPECT_EQ(stored(path, "old"), 1) << "what a first run would begin with replaces nothing";
}

TEST(SettingStore, WhatStillWaitsIsWrittenAtTheEnd)
{
    const TestFolder folder;
    const std::string path = folder / "settings.db";
    KeyValueStore(path).writeInt("first", 1);
    Holder holder(path);
    std::thread later;
    {
        const SettingStore store(path);
        EXPECT_TRUE(store.writeInt("late", 5));
        later = std::thread([&holder] {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            holder.release();
        });
    }
    later.join();
    EXPECT_EQ(stored(path, "late"), 5);
}

TEST(SettingStore, TheLastUserAndANextFirstOneMeet)
{
    const TestFolder folder;
    const std::string path = folder / "settings.db";
    KeyValueStore(path).writeInt("first", 1);
    const auto live = [&path](int user) {
        for (int i = 0; i < 40; ++i) {
            const SettingStore store(path);
            EXPECT_TRUE(store.writeInt(("key" + std::to_string(user)).c_str(), i));
        }
    };
    // Held long enough for a writer to begin.
    std::thread other([&path] {
        for (int i = 0; i < 8; ++i) {
            Holder holder(path);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    });
    std::thread second([&live] { live(2); });
    live(1);
    second.join();
    other.join();
    EXPECT_EQ(stored(path, "key1"), 39);
    EXPECT_EQ(stored(path, "key2"), 39);
}

TEST(SettingStore, AFileThatIsNoStoreIsSetAsideAndANewOneBegun)
{
    const TestFolder whole;
    const std::string good = whole / "settings.db";
    for (int i = 0; i < 40; ++i)
        KeyValueStore(good).put(("a long key to fill pages " + std::to_string(i)).c_str(),
            std::string(100, 'x'), std::chrono::milliseconds(500));
    const auto spoil = [&](int way, const std::string& path) {
        if (way == 0)
            std::ofstream(path) << "no database at all, but a text of some length";
        if (way == 1) {
            std::filesystem::copy_file(good, path);
            std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
        }
        if (way == 2) {
            Holder other(path);
            other.run("CREATE TABLE songs (a, b)");
        }
        if (way == 3) {
            Holder other(path);
            other.run("CREATE TABLE settings (a, b)");
        }
    };
    for (int way = 0; way < 4; ++way) {
        const TestFolder folder;
        const std::string path = folder / "settings.db";
        spoil(way, path);
        const auto before = std::filesystem::file_size(path);
        forgetMessage();
        const SettingStore store(path);
        int32_t value = 0;
        EXPECT_FALSE(store.readInt("firstuse", value)) << way;
        EXPECT_TRUE(store.writeInt("firstuse", 1)) << way;
        EXPECT_EQ(stored(path, "firstuse"), 1) << way;
        EXPECT_TRUE(currentMessage().starts_with("The settings could not be read")) << way;
        int aside = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            if (entry.path().filename().string().starts_with("settings.db.20"))
                aside += entry.file_size() == before;
        EXPECT_EQ(aside, 1) << way;
        forgetMessage();
    }
}

} // namespace ormund
