#include "runtime/debug_print.h"

#include "support/debug_lines.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using nezaiva::debugPrint;
using support::DebugLines;

std::u16string converted(const char* text, std::size_t capacity = 64)
{
    std::u16string units(capacity, u'x');
    const std::size_t count = nezaiva::utf8ToUtf16(text, units.data(), capacity);
    EXPECT_EQ(units[count], u'\0');
    units.resize(count);
    return units;
}

TEST(DebugPrint, FormatsALine)
{
    DebugLines heard;
    debugPrint("[%s] %i of %zu\n", "name", -3, std::size_t{5000000000});
    EXPECT_EQ(heard.lines(), (std::vector<std::u16string>{u"[name] -3 of 5000000000\n"}));
}

TEST(DebugPrint, CutsALongLineAt4095Bytes)
{
    DebugLines heard;
    const std::string fits(4095, 'a');
    const std::string tooLong(4096, 'b');
    debugPrint("%s", fits.c_str());
    debugPrint("%s", tooLong.c_str());
    debugPrint("%s%s", tooLong.c_str(), tooLong.c_str());
    const auto lines = heard.lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], std::u16string(4095, u'a'));
    EXPECT_EQ(lines[1], std::u16string(4095, u'b'));
    EXPECT_EQ(lines[2], std::u16string(4095, u'b'));
}

TEST(DebugPrint, ConvertsToUtf16)
{
    DebugLines heard;
    debugPrint("%s", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8E\xA8"); // a umlaut, euro sign, palette
    EXPECT_EQ(heard.lines(), (std::vector<std::u16string>{u"\u00E4\u20AC\U0001F3A8"}));
}

TEST(DebugPrint, CutsWithinACharacterWithoutReadingOn)
{
    DebugLines heard;
    const std::string text = std::string(4094, 'a') + "\xE2\x82\xAC";
    debugPrint("%s", text.c_str());
    EXPECT_EQ(heard.lines()[0], std::u16string(4094, u'a') + u"\uFFFD");
}

TEST(Utf8ToUtf16, ConvertsTheEndsOfEachLength)
{
    EXPECT_EQ(converted(""), u"");
    EXPECT_EQ(converted("\x01\x7F"), u"\x01\x7F");
    EXPECT_EQ(converted("\xC2\x80\xDF\xBF"), u"\u0080\u07FF");
    EXPECT_EQ(converted("\xE0\xA0\x80\xEF\xBF\xBF"), u"\u0800\uFFFF");
    EXPECT_EQ(converted("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"), u"\U00010000\U0010FFFF");
}

TEST(Utf8ToUtf16, ReplacesEveryByteThatBelongsNowhere)
{
    EXPECT_EQ(converted("a\x80z"), u"a\uFFFDz");                           // continuation alone
    EXPECT_EQ(converted("\xC0\x80"), u"\uFFFD\uFFFD");                     // overlong
    EXPECT_EQ(converted("\xE0\x9F\xBF"), u"\uFFFD\uFFFD\uFFFD");           // overlong
    EXPECT_EQ(converted("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");           // surrogate
    EXPECT_EQ(converted("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD"); // above the last code point
    EXPECT_EQ(converted("\xFF"), u"\uFFFD");
    EXPECT_EQ(converted("\xE2\x82"), u"\uFFFD\uFFFD"); // the text ends within the sequence
}

TEST(Utf8ToUtf16, LeavesOutWhatDoesNotFit)
{
    EXPECT_EQ(converted("abc", 4), u"abc");
    EXPECT_EQ(converted("abc", 3), u"ab");
    EXPECT_EQ(converted("abc", 1), u"");
    EXPECT_EQ(converted("a\xF0\x9F\x8E\xA8", 3), u"a"); // no half of a pair
    EXPECT_EQ(nezaiva::utf8ToUtf16("abc", nullptr, 0), 0u);
}

} // namespace
