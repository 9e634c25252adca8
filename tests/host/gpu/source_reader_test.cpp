// Reading GPU source text: what goes onto the stack, and what a consumer says against a text.

#include "host/gpu/source_reader.h"
#include "host/gpu/source_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <random>

namespace {

using namespace ombrix;

const std::string kZeros = "uvw_transform 0,0,0, 0,0,0, 0,0,0, 0,0,0\n";

std::string operands(const std::string& first)
{
    return "uvw_transform " + first + ",0,0, 0,0,0, 0,0,0, 0,0,0\n";
}

// The errors, a line each.
std::string errorsOf(const std::string& text, const SourceReaderOptions& options = {})
{
    std::string errors;
    for (const SourceProblem& problem : readSource(text, options).problems)
        if (problem.weight == SourceProblem::Weight::Error) errors += problemText(problem) + "\n";
    return errors;
}

std::string repeated(const std::string& piece, std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += piece;
    return text;
}

// The indices of the slots that a slot takes.
std::vector<std::uint32_t> inputsOf(const SourceReading& reading, std::size_t slot)
{
    const auto first = reading.inputs.begin() + reading.slots.at(slot).firstInput;
    return {first, first + reading.slots[slot].inputCount};
}

using Indices = std::vector<std::uint32_t>;

TEST(SourceReader, AnEmptyTextIsOneEmptySlot)
{
    const SourceReading reading = readSource("");
    EXPECT_TRUE(reading.understood());
    ASSERT_EQ(reading.slots.size(), 1u);
    EXPECT_EQ(reading.slots[0].lineCount, 0u);
    EXPECT_EQ(reading.results, Indices{0});
}

TEST(SourceReader, AnOperatorTakesTheTopmostSlots)
{
    const SourceReading reading =
        readSource("color 1 1 1 1\nsubtex\ncolor 2 2 2 2\nsubtex\ncolor 3 3 3 3\nsubtex\nbitmap -980\n" +
                   kZeros + "subtex\nbitmap -979\n");
    EXPECT_TRUE(reading.understood());
    ASSERT_EQ(reading.slots.size(), 5u);
    EXPECT_EQ(inputsOf(reading, 3), (Indices{1, 2}));
    EXPECT_EQ(inputsOf(reading, 4), (Indices{0, 3}));
    EXPECT_EQ(reading.results, Indices{4});
    EXPECT_EQ(reading.slots[3].lineNumber, 7u);
}

// (+ (* a a) a) with a in the first slot: references 0, 1 and 1 down, and the end drops one slot.
TEST(SourceReader, RepetitionsCountFromTheSlotBelow)
{
    const SourceReading reading = readSource(
        "color 1 1 1 1\nsubtex\nbitmap -952\n" + operands("0") + "subtex\nbitmap -952\n" + operands("1") +
        "subtex\nbitmap -980\n" + kZeros + "subtex\nbitmap -952\n" + operands("1") + "subtex\nbitmap -979\n" +
        operands("1") + "subtex\nbitmap -934\n" + operands("1"));
    EXPECT_TRUE(reading.understood());
    ASSERT_EQ(reading.slots.size(), 7u);
    for (const std::size_t slot : {1, 2, 4})
        EXPECT_EQ(reading.slots[slot].repeated, 0u) << slot;
    EXPECT_EQ(inputsOf(reading, 3), (Indices{1, 2}));
    EXPECT_EQ(inputsOf(reading, 5), (Indices{3, 4}));
    EXPECT_EQ(inputsOf(reading, 6), (Indices{0, 5}));
    EXPECT_EQ(reading.results, Indices{6});
}

TEST(SourceReader, RepetitionOfARepetitionIsTheSlotItself)
{
    const SourceReading reading =
        readSource("color 1 1 1 1\nsubtex\nbitmap -952\n" + operands("0") + "subtex\nbitmap -952\n" +
                   operands("0") + "subtex\nbitmap -934\n" + operands("2"));
    EXPECT_TRUE(reading.understood());
    EXPECT_EQ(reading.slots.at(2).repeated, 0u);
}

// How many slots each operator takes, as its writers write it. Operands are given where it needs them.
TEST(SourceReader, OperatorsTakeTheirSlots)
{
    const struct {
        int opcode, slots;
        const char* operands; // the first two
    } rows[] = {{-944, 1, "0,0"},    {-951, 3, "0,0"},  {-965, 1, ""},     {-965, 1, "0,0"}, {-948, 3, "0,0"},
                {-948, 5, ""},       {-973, 1, "1,0"},  {-973, 1, "2,0"},  {-973, 1, ""},    {-945, 3, "0,0"},
                {-943, 2, "0,0"},    {-943, 2, "1,0"},  {-946, 3, "26,0"}, {-956, 2, "2,0"}, {-987, 1, ""},
                {-947, 2, "5,0"},    {-947, 4, "5,1"},  {-979, 2, "1,0"},  {-979, 2, "0,0"}, {-979, 2, ""},
                {-980, 2, ""},       {-981, 2, ""},     {-982, 2, ""},     {-935, 2, "2,0"}, {-955, 5, ""},
                {-926, 3, ""},       {-983, 2, ""},     {-983, 2, "0,3"},  {-998, 2, ""},    {-974, 1, ""},
                {-999, 1, ""},       {-936, 1, "0,-1"}, {-953, 1, "7,0"},  {-953, 1, "7,1"}, {-953, 0, "7,2"},
                {-962, 1, "0,1000"}, {-963, 1, ""},     {-964, 1, ""},     {-971, 0, "4,0"}, {-972, 0, ""}};
    for (const auto& row : rows) {
        const std::string line =
            *row.operands ? std::string("uvw_transform ") + row.operands + ",0, 0,0,0, 0,0,0, 0,0,0\n"
                          : std::string();
        const std::string inputs = repeated("color 0 0 0 0\nsubtex\n", static_cast<std::size_t>(row.slots));
        const std::string text = inputs + "bitmap " + std::to_string(row.opcode) + "\n" + line;
        EXPECT_EQ(errorsOf(text), "") << text;
        EXPECT_NE(errorsOf("color 0 0 0 0\nsubtex\n" + text), "") << text; // one too many
        if (row.slots == 0) continue;
        EXPECT_NE(errorsOf(text.substr(text.find("subtex\n") + 7)), "") << text; // one too few
    }
}

TEST(SourceReader, MissingSlotsAreCounted)
{
    EXPECT_EQ(errorsOf("color 1 1 1 1\nsubtex\nbitmap -945\n" + kZeros),
              "line 3: bitmap -945 (lerp) takes 3 slots and only 1 is there\n");
    EXPECT_EQ(errorsOf("bitmap -952\n" + operands("0")),
              "line 1: bitmap -952 (repeat) reaches 1 slot down and only 0 are there\n");
    EXPECT_EQ(errorsOf("color 1 1 1 1\nsubtex\nbitmap -934\n" + operands("1")),
              "line 3: bitmap -934 (last of) takes 2 slots and only 1 is there\n");
}

TEST(SourceReader, MissingOperandsAreTold)
{
    EXPECT_EQ(errorsOf("color 1 1 1 1\nsubtex\nbitmap -952\n"),
              "line 3: bitmap -952 (repeat) lacks its operands, a uvw_transform line\n");
    EXPECT_EQ(errorsOf("color 1 1 1 1\nsubtex\nbitmap -979\n" + operands("7")),
              "line 3: bitmap -979 (add) has no operation 7.000000\n");
    for (const char* bad : {"-1", "0.5", "nan", "1e300"})
        EXPECT_EQ(errorsOf("color 1 1 1 1\nsubtex\nbitmap -952\n" + operands(bad)),
                  "line 3: bitmap -952 (repeat) needs a whole first operand of 0 or above\n")
            << bad;
}

TEST(SourceReader, SlotsLeftOverAreTold)
{
    EXPECT_EQ(errorsOf("color 1 1 1 1\nsubtex\ncolor 1 1 1 1\n"),
              "line 3: 2 slots are left at the end, and one is the result\n");
}

TEST(SourceReader, EmptySlotsAreRemarksWhereAnInputMayBeUnset)
{
    const SourceReading reading = readSource("subtex\nsubtex\nbitmap -947\n" + kZeros);
    EXPECT_TRUE(reading.understood());
    EXPECT_EQ(reading.emptyInputs, 2u);
    ASSERT_EQ(reading.problems.size(), 2u);
    EXPECT_EQ(problemText(reading.problems[0]),
              "line 1: the slot is empty, and bitmap -947 (compare) on line 3 takes it");
    // The textures of hair always write one.
    EXPECT_EQ(readSource("subtex\nbitmap -963\n").problems.size(), 0u);
}

TEST(SourceReader, UnknownLinesAndOperatorsAreTold)
{
    EXPECT_EQ(errorsOf("frobnicate 7\n"), "line 1: no such line: \"frobnicate 7\"\n");
    EXPECT_EQ(errorsOf("\n"), "line 1: no such line: \"\"\n");
    EXPECT_EQ(errorsOf("Color 1 1 1 1\n"), "line 1: no such line: \"Color 1 1 1 1\"\n");
    EXPECT_EQ(errorsOf("bitmap -901\n"), "line 1: bitmap -901 is no operator\n");
    EXPECT_EQ(errorsOf("\x1b[31m\xff\n"), "line 1: no such line: \"?[31m?\"\n");
}

TEST(SourceReader, MalformedNumbersAreTold)
{
    for (const char* bad :
         {"color 0,5 1 1 1", "color 1 1 1", "color 1 1 1 1 1", "color 1 1 1 x", "color",
          "color 1 1 1 1subtex", "color 1 1 1 1.5.2", "color +1 1 1 1", "color 1 1 1 1e999"})
        EXPECT_EQ(errorsOf(std::string(bad) + "\n"),
                  std::string("line 1: color takes 4 numbers, not \"") + bad + "\"\n");
    for (const char* bad : {"bitmap", "bitmap x", "bitmap 1.5", "bitmap 1 2", "bitmap 99999999999"})
        EXPECT_EQ(errorsOf(std::string(bad) + "\n"),
                  std::string("line 1: bitmap takes one whole number, not \"") + bad + "\"\n");
    EXPECT_EQ(errorsOf("uvw_transform 1 0 0 0 1 0 0 0 1 0 0 0\n"),
              "line 1: uvw_transform takes 12 numbers, not \"uvw_transform 1 0 0 0 1 0 0 0 1 0 0 0\"\n");
    EXPECT_EQ(errorsOf("invert_color 1\n"),
              "line 1: invert_color stands alone on its line, not \"invert_color 1\"\n");
}

TEST(SourceReader, NumbersAreRead)
{
    const SourceReading reading = readSource("color 0.25 -1e-3 0 1000000.5\ngamma inf\n");
    EXPECT_TRUE(reading.understood());
    const double* color = reading.numbersOf(reading.lines.at(0));
    EXPECT_EQ(color[0], 0.25);
    EXPECT_EQ(color[1], -0.001);
    EXPECT_EQ(color[3], 1000000.5);
    ASSERT_EQ(reading.problems.size(), 1u);
    EXPECT_EQ(problemText(reading.problems[0]), "line 2: a number is not finite: \"gamma inf\"");
}

// With "%d", with "%f" and with "%g" and blanks, before the operator or after it.
TEST(SourceReader, OperandsStandInEveryFormatOfTheirWriters)
{
    for (const char* line :
         {"uvw_transform 2,0,0, 0,0,0, 0,0,0, 0,0,0\n", "uvw_transform 2.000000,0,0,0,0,0,0,0,0,0,0,0\n",
          "uvw_transform 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -0\n"}) {
        for (const std::string& slot :
             {line + std::string("bitmap -947\n"), std::string("bitmap -947\n") + line}) {
            const SourceReading reading = readSource("color 1 1 1 1\nsubtex\ncolor 1 1 1 1\nsubtex\n" + slot);
            EXPECT_TRUE(reading.understood()) << slot;
            ASSERT_NE(reading.operandsOf(reading.slots.at(2)), nullptr) << slot;
            EXPECT_EQ(reading.operandsOf(reading.slots[2])[0], 2.0) << slot;
        }
    }
}

TEST(SourceReader, BitmapsAreHeldAgainstTheData)
{
    SourceReaderOptions options;
    EXPECT_EQ(errorsOf("bitmap 7\n", options), "");
    options.bitmaps = 2;
    EXPECT_EQ(errorsOf("bitmap 1\n", options), "");
    EXPECT_EQ(errorsOf("bitmap 2\n", options), "line 1: bitmap 2 does not exist; the data holds 2 bitmaps\n");
    EXPECT_EQ(errorsOf("bitmap -1\n", options), "line 1: bitmap -1: the bitmap could not be stored\n");
    options.mayLackBitmaps = true;
    EXPECT_EQ(errorsOf("bitmap -1\n", options), "");
}

const std::string kPlacement = "uvw_transform 4,0,0,0,1,0,0,0,1,0.25,0,0\nmap_channel 1\n"
                               "uvwGenMayaPlace2dTexture\nuvParamsPtr_id 0\n";
const std::string kSevenInputs = "maya_noise\n" + repeated("color 0 0 0 0\nsubtex\n", 7);
const std::string kNoiseSettings = "maya_noise_2d\nmaya_perlin\nuvw_transform 80,1,1,1,1,1,1,1,1,5,3,0\n";

TEST(SourceReader, PlacementsAreNoOperands)
{
    EXPECT_EQ(errorsOf(kPlacement), "");
    EXPECT_EQ(errorsOf(kPlacement + "bitmap 0\ncolor 0.5 0.5 0.5 1\ninvert_alpha\n"), "");
    EXPECT_EQ(errorsOf("bitmap -972\n" + kPlacement), "");
    // One generator within another.
    EXPECT_EQ(errorsOf("uvw_transform 1,0,0,0,1,0,0,0,1,0,0,0\nmap_channel_id 3\n" + kPlacement +
                       "uvwGenMayaPlace2dTexture\nbitmap 0\n"),
              "");
    EXPECT_EQ(
        errorsOf("color 1 1 1 1\nsubtex\nbitmap -973\n" + kPlacement),
        "line 5: bitmap -973 (color to float) has no coordinates, but \"map_channel\" stands in its slot\n"
        "line 6: bitmap -973 (color to float) has no coordinates, but \"uvwGenMayaPlace2dTexture\" stands "
        "in its slot\n");
}

TEST(SourceReader, MayaNoiseHasItsSettingsInTheNextSlot)
{
    const std::string noise =
        kSevenInputs + kPlacement + "bitmap -968\nsubtex\n" + kNoiseSettings + "color 0.5 0.5 0.5 1\n";
    const SourceReading reading = readSource(noise);
    EXPECT_EQ(errorsOf(noise), "");
    ASSERT_EQ(reading.slots.size(), 9u);
    EXPECT_EQ(inputsOf(reading, 7), (Indices{0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(inputsOf(reading, 8), Indices{7});
    ASSERT_NE(reading.operandsOf(reading.slots[8]), nullptr);
    EXPECT_EQ(reading.operandsOf(reading.slots[8])[9], 5.0);
    EXPECT_EQ(errorsOf(noise + "subtex\ncolor 2 2 2 2\nsubtex\nbitmap -980\n"), "");
}

TEST(SourceReader, MayaNoiseThatIsNotWholeIsTold)
{
    EXPECT_EQ(errorsOf(kSevenInputs + "bitmap -968\n"),
              "line 16: bitmap -968 (maya noise) lacks its settings, a slot after its own\n");
    EXPECT_EQ(
        errorsOf(kSevenInputs + "bitmap -968\nsubtex\ncolor 1 1 1 1\n"),
        "line 18: the slot after bitmap -968 (maya noise) must hold its settings, a uvw_transform and no "
        "bitmap\n");
    EXPECT_EQ(errorsOf(kSevenInputs.substr(11) + "bitmap -968\nsubtex\n" + kNoiseSettings),
              "line 15: bitmap -968 (maya noise) without a maya_noise line\n");
    EXPECT_EQ(errorsOf("maya_noise\n"), "line 1: maya_noise without its operator, bitmap -968\n");
    EXPECT_EQ(errorsOf("maya_wave\n"), "line 1: maya_wave outside the settings of maya noise\n");
}

TEST(SourceReader, ASlotHoldsOneBitmapAndOneLineOfOperands)
{
    EXPECT_EQ(errorsOf("bitmap 0\nbitmap 1\n"),
              "line 2: a second bitmap in one slot; \"subtex\" is missing before it\n");
    EXPECT_EQ(errorsOf("color 1 1 1 1\nsubtex\nbitmap -944\n" + kZeros + kZeros),
              "line 5: a second uvw_transform in one slot\n");
}

TEST(SourceReader, BareNumbersBelongToTheInversionAlone)
{
    const std::string numbers = "1.000000,0,0,0,0,0,0,0,0,0,0,0\n";
    EXPECT_EQ(errorsOf("color 1 1 1 1\nsubtex\nbitmap -974\nsubtex\n" + numbers + "bitmap -999\n"), "");
    EXPECT_EQ(errorsOf("color 1 1 1 1\nsubtex\n" + numbers + "bitmap -974\n"),
              "line 3: twelve numbers without the word uvw_transform\n");
}

TEST(SourceReader, ForeignLinesAreTheCallersAffair)
{
    SourceReaderOptions options;
    options.isForeign = [](std::string_view line) { return line == "color of someone else"; };
    EXPECT_EQ(errorsOf("color of someone else\nsubtex\nbitmap -944\n", options), "");
}

// A text of every kind of line.
std::string wholeText()
{
    return kSevenInputs + kPlacement + "bitmap -968\nsubtex\n" + kNoiseSettings +
           "color 0.5 0.5 0.5 1\ncompatibility_with 1\ninvert_color\nalpha_from_intensity 2\nsubtex\nbitmap "
           "-952\n" +
           operands("0") + "subtex\nbitmap 0\ngamma 2.2\nintens2AColor\nsubtex\nbitmap -935\n" +
           operands("2") +
           "subtex\ncolor 1 0 0 1\ncolor_value 1 1 1 1\ntex_projection_wrap\nsubtex\nbitmap "
           "-980\nsubtex\nbitmap -934\n" +
           operands("1");
}

TEST(SourceReader, BadTextNeverCrashes)
{
    ASSERT_EQ(errorsOf(wholeText()), "");
    std::mt19937 random(20260801);
    const std::string pieces[] = {
        "subtex\n",     "bitmap -934\n", "bitmap -952\n",  "-",  "\n", ",", "e99", "9999999999",
        "maya_noise\n", "bitmap -968\n", "uvw_transform ", "nan"};
    std::size_t understood = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string text = wholeText();
        for (std::uint_fast32_t change = random() % 8; change-- > 0;) {
            const std::size_t place = random() % (text.size() + 1);
            const std::size_t length = std::min<std::size_t>(random() % 30, text.size() - place);
            switch (random() % 4) {
            case 0:
                text.erase(place, length);
                break;
            case 1:
                text.insert(place, text.substr(random() % text.size(), length));
                break;
            case 2:
                text.insert(place, pieces[random() % std::size(pieces)]);
                break;
            default:
                if (place < text.size()) text[place] = static_cast<char>(random());
            }
            if (text.empty()) break;
        }
        const SourceReading reading = readSource(text);
        understood += reading.understood();
        // A slot is taken at most once, and what is not taken is left.
        EXPECT_EQ(reading.inputs.size() + reading.results.size(), reading.slots.size()) << text;
        EXPECT_FALSE(drawSourceTree(reading).empty());
    }
    EXPECT_GT(understood, 0u);
    EXPECT_LT(understood, 10000u);
}

double secondsOf(const std::string& text)
{
    const std::clock_t start = std::clock();
    EXPECT_FALSE(drawSourceTree(readSource(text)).empty());
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Sixteen times the text takes about sixteen times as long; a quadratic step would take 256 times as long.
TEST(SourceReader, TakesTimeInProportionToTheText)
{
    const std::string deep = "subtex\nbitmap -944\n";
    const std::string wide = "color 1 1 1 1\nsubtex\n";
    const std::string bad = "bitmap -945\nsubtex\nfrobnicate\n";
    for (const std::string& piece : {deep, wide, bad}) {
        double shorter = 1e9, longer = 1e9;
        for (int i = 0; i < 5; ++i) {
            shorter = std::min(shorter, secondsOf(repeated(piece, 5000)));
            longer = std::min(longer, secondsOf(repeated(piece, 80000)));
        }
        EXPECT_LT(longer, shorter * 16.0 * 4.0 + 0.01) << piece;
    }
}

} // namespace
