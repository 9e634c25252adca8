// Replays the fuzzer's corpus, and a fixed sequence of changes to it.

#include "fuzz/expr_exercise.h"

#include "expr_support.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <vector>

namespace {

using namespace expr_test;

std::vector<std::string> corpus()
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(NEZAIVA_EXPR_CORPUS))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    std::vector<std::string> texts;
    for (const auto& file : files)
        texts.push_back(bytesOf(file));
    return texts;
}

TEST(ExpressionCorpus, HoldsWhatMustHold)
{
    const std::vector<std::string> texts = corpus();
    ASSERT_GE(texts.size(), 20u);
    for (const std::string& text : texts) {
        SCOPED_TRACE(text);
        std::string fault;
        errorsOf([&] { fault = fuzz::exerciseExpression(text); });
        EXPECT_EQ(fault, "");
    }
}

// One change: a piece that means something put in, a stretch taken out, doubled or brought from another
// text, or a byte made another.
void mutate(std::string& text, const std::vector<std::string>& texts, std::mt19937& random)
{
    static const std::string kPieces[] = {"(",  ")",  "'",       " ",    "\t", "-",  "1",
                                          "0x", "e5", ".",       "(if ", "a",  "e ", "(color ",
                                          "n",  "c ", "(manip ", "/",    "'(", " x"};
    const auto below = [&](std::size_t count) { return count ? random() % count : 0; };
    const std::size_t place = below(text.size() + 1);
    const std::size_t length = below(std::min<std::size_t>(text.size() - place, 12) + 1);
    switch (random() % 5) {
    case 0:
        text.insert(place, kPieces[below(std::size(kPieces))]);
        break;
    case 1:
        text.erase(place, length);
        break;
    case 2:
        text.insert(place, text.substr(place, length));
        break;
    case 3: {
        const std::string& other = texts[below(texts.size())];
        text.insert(place, other.substr(below(other.size() + 1), 1 + below(12)));
        break;
    }
    default:
        if (place < text.size()) text[place] = static_cast<char>(random());
        break;
    }
}

TEST(ExpressionCorpus, ChangedHoldsWhatMustHold)
{
    constexpr int kRounds = 60000;
    constexpr std::size_t kLongest = 400;
    const std::vector<std::string> texts = corpus();
    ASSERT_FALSE(texts.empty());
    std::mt19937 random(22);
    std::string text, fault;
    errorsOf([&] {
        for (int round = 0; round < kRounds && fault.empty(); ++round) {
            if (round % 50 == 0 || text.size() > kLongest) text = texts[random() % texts.size()];
            mutate(text, texts, random);
            fault = fuzz::exerciseExpression(text);
        }
    });
    EXPECT_EQ(fault, "") << "by the text: " << text;
}

} // namespace
