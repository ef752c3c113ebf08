#include "base/TerminalText.h"

#include <gtest/gtest.h>

namespace ormund {

TEST(TerminalText, NothingMovesTheCursorAndOtherLettersStay)
{
    EXPECT_EQ(terminalText("cannot read \033]0;title\007\033[2Ja\nb\tc\177.kwe"),
        "cannot read ?]0;title??[2Ja?b?c?.kwe");
    EXPECT_EQ(terminalText("\xC2\x9B"
                           "31m \xC3\xBC \xC2\xA0 \xE2\x80\x9C"),
        "?31m \xC3\xBC \xC2\xA0 \xE2\x80\x9C");
}

} // namespace ormund
