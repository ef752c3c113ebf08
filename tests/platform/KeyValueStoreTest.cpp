#include "platform/KeyValueStore.h"
#include "platform/KWFileio.h"
#include "tests/platform/TestFolder.h"
#include "tests/support/Checked.h"

#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace ormund {

TEST(KeyValueStore, KeepsTextsAndNumbersApart)
{
    const TestFolder folder;
    const KeyValueStore store(folder / "new folder/settings.db");
    std::string text = "kept";
    int32_t number = 7;
    EXPECT_FALSE(store.readString("presetpath0", text));
    EXPECT_FALSE(store.readInt("firstuse", number));
    EXPECT_EQ(text, "kept");
    EXPECT_EQ(number, 7);

    ASSERT_TRUE(store.writeString("presetpath0", "/a b/\xC3\xBC'\"; DROP"));
    ASSERT_TRUE(store.writeInt("firstuse", -1));
    EXPECT_TRUE(store.readString("presetpath0", text));
    EXPECT_EQ(text, "/a b/\xC3\xBC'\"; DROP");
    EXPECT_TRUE(store.readInt("firstuse", number));
    EXPECT_EQ(number, -1);
    EXPECT_FALSE(store.readString("firstuse", text));
    EXPECT_FALSE(store.readInt("presetpath0", number));
}

TEST(KeyValueStore, WhatCannotBeOpenedBehavesAsMissing)
{
    const TestFolder folder;
    ASSERT_TRUE(KWFileio::write(folder / "torn.db", "this is no store at all, only text", 34));
    ASSERT_TRUE(KWFileio::makeFolder(folder / "folder.db"));
    for (const std::string& path :
        {std::string(), folder / "torn.db", folder / "folder.db", folder / "torn.db/below.db"}) {
        const KeyValueStore store(path);
        int32_t number = 3;
        EXPECT_FALSE(store.writeInt("ignorePrgChange", 1)) << path;
        EXPECT_FALSE(store.readInt("ignorePrgChange", number)) << path;
        EXPECT_EQ(number, 3);
    }
}

TEST(KeyValueStore, TwoProcessesWritingAtOnceLoseNothing)
{
    const TestFolder folder;
    const std::string path = folder / "settings.db";
    constexpr int kWrites = rounds(1000);
    pid_t writers[2];
    for (int w = 0; w < 2; ++w) {
        writers[w] = ::fork();
        ASSERT_GE(writers[w], 0);
        if (writers[w] == 0) {
            const KeyValueStore store(path);
            bool all = true;
            for (int i = 0; i < kWrites; ++i) {
                const std::string own = "key " + std::to_string(w) + " " + std::to_string(i % 50);
                all = store.writeInt(own.c_str(), i) && all;
                if (i % 10 == 0)
                    all = store.writeString("shared", std::string(500, w ? 'b' : 'a')) && all;
            }
            ::_exit(all ? 0 : 1);
        }
    }
    for (const pid_t writer : writers) {
        int status = -1;
        ::waitpid(writer, &status, 0);
        EXPECT_EQ(status, 0);
    }
    const KeyValueStore store(path);
    for (int w = 0; w < 2; ++w)
        for (int slot = 0; slot < 50; ++slot) {
            const std::string own = "key " + std::to_string(w) + " " + std::to_string(slot);
            int32_t value = -1;
            ASSERT_TRUE(store.readInt(own.c_str(), value)) << own;
            EXPECT_EQ(value, kWrites - 50 + slot);
        }
    std::string shared;
    ASSERT_TRUE(store.readString("shared", shared));
    EXPECT_EQ(shared, std::string(500, shared.at(0)));
}

} // namespace ormund
