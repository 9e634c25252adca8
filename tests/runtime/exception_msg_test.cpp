#include <ombrix/exception_msg.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

using OUtils::ExceptionMsg;

TEST(ExceptionMsg, FormatsItsText)
{
    const ExceptionMsg message("%s has %i of %u", "it", -2, 7u);
    EXPECT_STREQ(message.what(), "it has -2 of 7");
}

TEST(ExceptionMsg, CutsALongText)
{
    const std::string fits(1023, 'a');
    const std::string tooLong(2000, 'b');
    EXPECT_EQ(ExceptionMsg("%s", fits.c_str()).what(), fits);
    EXPECT_EQ(ExceptionMsg("%s", tooLong.c_str()).what(), std::string(1023, 'b'));
}

TEST(ExceptionMsg, CopiesHoldTheSameText)
{
    const std::string tooLong(2000, 'c');
    const ExceptionMsg message("%s", tooLong.c_str());
    const ExceptionMsg copy(message);
    EXPECT_STREQ(copy.what(), message.what());

    ExceptionMsg assigned("something else that is longer than nothing");
    assigned = ExceptionMsg("short");
    EXPECT_STREQ(assigned.what(), "short");
    const ExceptionMsg& itself = assigned;
    assigned = itself;
    EXPECT_STREQ(assigned.what(), "short");
}

TEST(ExceptionMsg, HasAVirtualDestructor)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<ExceptionMsg>);
}

} // namespace
