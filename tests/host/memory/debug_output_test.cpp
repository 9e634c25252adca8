#include "host/console/console.h"
#include "host/memory/allocator.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace ombrix;

std::string shown(const char16_t* text, Verbosity verbosity = Verbosity::Verbose)
{
    const Verbosity before = ombrix::verbosity();
    setVerbosity(verbosity);
    testing::internal::CaptureStderr();
    oDebugOutput(text);
    setVerbosity(before);
    return testing::internal::GetCapturedStderr();
}

TEST(DebugOutput, ShowsUtf8WhenVerbose)
{
    EXPECT_EQ(shown(u"plain\n"), "plain\n");
    EXPECT_EQ(shown(u"\u00E9\u20AC\U0001F600"), "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(shown(u""), "");
    EXPECT_EQ(shown(nullptr), "");
}

TEST(DebugOutput, IsSilentOtherwise)
{
    EXPECT_EQ(shown(u"plain\n", Verbosity::Normal), "");
    EXPECT_EQ(shown(u"plain\n", Verbosity::Quiet), "");
}

TEST(DebugOutput, ALoneSurrogateIsReplaced)
{
    const char16_t lone[] = {0xD800, u'a', 0xDC00, 0};
    EXPECT_EQ(shown(lone), "\xEF\xBF\xBD"
                           "a\xEF\xBF\xBD");
}

TEST(DebugOutput, LongTextsArriveWhole)
{
    std::u16string text;
    std::string expected;
    for (int i = 0; i < 2000; ++i) {
        text += u'\u20AC';
        expected += "\xE2\x82\xAC";
    }
    EXPECT_EQ(shown(text.c_str()), expected);
}

TEST(DebugOutput, AllocatesNothingFromTheHost)
{
    const auto before = allocationCounters().totalAllocations;
    shown(u"plain\n");
    EXPECT_EQ(allocationCounters().totalAllocations, before);
}

void append(const char16_t* text, void* user)
{
    *static_cast<std::u16string*>(user) += text;
}

TEST(DebugOutput, AHookReceivesTheTextWhateverTheVerbosity)
{
    std::u16string heard;
    setDebugOutputHook(append, &heard);
    EXPECT_EQ(shown(u"one ", Verbosity::Quiet), "");
    EXPECT_EQ(shown(u"two"), "");
    setDebugOutputHook(nullptr, nullptr);
    EXPECT_EQ(heard, u"one two");
}

TEST(DebugOutput, Utf8TextsAreConverted)
{
    std::u16string heard;
    setDebugOutputHook(append, &heard);
    debugOutput("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    debugOutput("\xFF!\xE2\x82");
    setDebugOutputHook(nullptr, nullptr);
    EXPECT_EQ(heard, u"a\u00E9\u20AC\U0001F600\uFFFD!\uFFFD\uFFFD");
}

TEST(DebugOutput, OverlongUtf8TextsAreCut)
{
    std::u16string heard;
    setDebugOutputHook(append, &heard);
    debugOutput(std::string(5000, 'x'));
    setDebugOutputHook(nullptr, nullptr);
    EXPECT_GE(heard.size(), 1000u);
    EXPECT_LE(heard.size(), 1023u);
}

} // namespace
