#include "platform/Messages.h"

#include <gtest/gtest.h>

namespace ormund {

class MessagesTest : public testing::Test {
protected:
    void TearDown() override { forgetMessage(); }
};

TEST_F(MessagesTest, AMessageInAnEditorIsKeptUntilForgottenAndLaterOnesAreDropped)
{
    addMessageViewer();
    const unsigned before = messageNumber();
    showMessage("unknown value in %s : val:%d", "menu", 7);
    showMessage("another");
    EXPECT_EQ(currentMessage(), "unknown value in menu : val:7");
    EXPECT_EQ(messageNumber(), before + 1);
    forgetMessage();
    EXPECT_FALSE(hasMessage());
    showMessage("another");
    EXPECT_EQ(currentMessage(), "another");
    removeMessageViewer();
}

TEST_F(MessagesTest, WithoutAnEditorTheLastIsKeptAndNothingIsPrinted)
{
    testing::internal::CaptureStderr();
    showMessage("first");
    showMessage("second");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(currentMessage(), "second");
}

TEST_F(MessagesTest, ALongMessageIsCut)
{
    addMessageViewer();
    showMessage("%s", std::string(20000, 'x').c_str());
    EXPECT_EQ(currentMessage(), std::string(kMessageBytes - 1, 'x'));
    removeMessageViewer();
}

} // namespace ormund
