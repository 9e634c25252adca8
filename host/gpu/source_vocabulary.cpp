#include "host/gpu/source_vocabulary.h"

#include <algorithm>
#include <iterator>

namespace ombrix {
namespace {

using Kind = SourceLineKind;
using Numbers = SourceNumbers;

constexpr SourceLineForm kLines[] = {
    {"subtex", Kind::Subtexture, Numbers::None, 0, "next slot"},
    {"color", Kind::Color, Numbers::Floats, 4, "color"},
    {"bitmap", Kind::Bitmap, Numbers::Whole, 1, "bitmap"},
    {"uvw_transform", Kind::Transform, Numbers::Floats, kOperandCount, "transform"},
    {"map_channel", Kind::MapChannel, Numbers::Whole, 1, "channel"},
    {"map_channel_id", Kind::MapChannel, Numbers::Whole, 1, "named channel"},
    {"uvwGenMayaPlace2dTexture", Kind::Placement, Numbers::None, 0, "place2d"},
    {"uvParamsPtr_id", Kind::PlacementBlock, Numbers::Whole, 1, "block"},
    {"intens2AColor", Kind::Note, Numbers::None, 0, "float to color"},
    {"invert_color", Kind::Note, Numbers::None, 0, "invert color"},
    {"invert_alpha", Kind::Note, Numbers::None, 0, "invert alpha"},
    {"alpha_from_intensity", Kind::Note, Numbers::Whole, 1, "alpha from intensity"},
    {"compatibility_with", Kind::Note, Numbers::Whole, 1, "compatibility"},
    {"gamma", Kind::Note, Numbers::Floats, 1, "gamma"},
    {"color_value", Kind::Note, Numbers::Floats, 4, "color value"},
    {"tex_projection_wrap", Kind::Note, Numbers::None, 0, "projection wraps"},
    {"maya_noise", Kind::NoiseBegin, Numbers::None, 0, "maya noise begins"},
    {"maya_noise_2d", Kind::NoiseSetting, Numbers::None, 0, "2d"},
    {"maya_noise_3d", Kind::NoiseSetting, Numbers::None, 0, "3d"},
    {"maya_perlin", Kind::NoiseSetting, Numbers::None, 0, "perlin"},
    {"maya_wispy", Kind::NoiseSetting, Numbers::None, 0, "wispy"},
    {"maya_billow", Kind::NoiseSetting, Numbers::None, 0, "billow"},
    {"maya_wave", Kind::NoiseSetting, Numbers::None, 0, "wave"},
};

constexpr SourceLineForm kBareTransform = {"", Kind::BareTransform, Numbers::Floats, kOperandCount, ""};

using Rule = OperandRule;
using Style = OperandStyle;

// In the order of their numbers. The forms of one operator stand together.
constexpr OperatorForm kOperators[] = {
    {.opcode = -999, .name = "invert", .inputs = 1, .takesBareNumbers = true},
    {.opcode = -998, .name = "scale", .inputs = 2, .inputNames = {"value", "by"}},
    {.opcode = -987, .name = "rgb to hsv", .inputs = 1},
    {.opcode = -983, .name = "sum", .inputs = 2, .style = Style::Divisor},
    {.opcode = -982, .name = "multiply alpha", .inputs = 2},
    {.opcode = -981, .name = "add alpha", .inputs = 2},
    {.opcode = -980, .name = "multiply", .inputs = 2},
    {.opcode = -979, .name = "add", .inputs = 2, .rule = Rule::Missing},
    {.opcode = -979, .name = "add", .inputs = 2, .rule = Rule::FirstIs, .ruleValue = 1},
    {.opcode = -979, .name = "subtract", .inputs = 2, .rule = Rule::FirstIs, .ruleValue = 0},
    {.opcode = -974, .name = "alpha as color", .inputs = 1},
    {.opcode = -973, .name = "color to float", .inputs = 1, .rule = Rule::Missing},
    {.opcode = -973, .name = "intensity", .inputs = 1, .rule = Rule::FirstIs, .ruleValue = 1},
    {.opcode = -973, .name = "luminance", .inputs = 1, .rule = Rule::FirstIs, .ruleValue = 2},
    {.opcode = -972, .name = "coordinates as color", .inputs = 0, .takesPlacement = true},
    {.opcode = -971, .name = "facing ratio", .inputs = 0, .rule = Rule::Given},
    {.opcode = -968,
     .name = "maya noise",
     .inputs = 7,
     .inputNames = {"color 1", "color 2", "threshold", "implode center", "implode", "origin", "scale"},
     .takesPlacement = true,
     .settingsFollow = true},
    {.opcode = -965, .name = "hsv to rgb", .inputs = 1},
    // The textures of hair end a slot before their own, which stays empty.
    {.opcode = -964, .name = "hair color", .inputs = 1, .mayLackInput = true},
    {.opcode = -963, .name = "distance along strand", .inputs = 1, .mayLackInput = true},
    {.opcode = -962, .name = "random by strand", .inputs = 1, .rule = Rule::Given, .mayLackInput = true},
    {.opcode = -956, .name = "arithmetic", .inputs = 2, .rule = Rule::Given, .style = Style::Arithmetic},
    {.opcode = -955,
     .name = "set range",
     .inputs = 5,
     .inputNames = {"value", "old min", "old max", "new min", "new max"}},
    // An integer attribute has no default on the GPU.
    {.opcode = -953,
     .name = "user attribute",
     .inputs = 0,
     .rule = Rule::SecondIs,
     .ruleValue = 2,
     .style = Style::Attribute},
    {.opcode = -953,
     .name = "user attribute",
     .inputs = 1,
     .rule = Rule::Given,
     .style = Style::Attribute,
     .inputNames = {"default"},
     .mayLackInput = true},
    {.opcode = -952, .name = "repeat", .inputs = 0, .rule = Rule::Given, .use = SlotUse::Repeats},
    {.opcode = -951, .name = "clamp", .inputs = 3, .inputNames = {"value", "lower", "upper"}},
    // With operands it is an expression's condition, without them that of the condition textures.
    {.opcode = -948,
     .name = "condition",
     .inputs = 5,
     .rule = Rule::Missing,
     .inputNames = {"condition", "color b", "alpha b", "color a", "alpha a"}},
    {.opcode = -948, .name = "if", .inputs = 3, .inputNames = {"condition", "then", "else"}},
    {.opcode = -947,
     .name = "compare",
     .inputs = 4,
     .rule = Rule::SecondIs,
     .ruleValue = 1,
     .style = Style::Comparison,
     .inputNames = {"first", "second", "if true", "if false"}},
    {.opcode = -947, .name = "compare", .inputs = 2, .rule = Rule::Given, .style = Style::Comparison},
    {.opcode = -946,
     .name = "overlay",
     .inputs = 3,
     .rule = Rule::FirstIs,
     .ruleValue = 26,
     .inputNames = {"a", "b", "factor"}},
    {.opcode = -945, .name = "lerp", .inputs = 3, .inputNames = {"a", "b", "factor"}},
    {.opcode = -944, .name = "abs", .inputs = 1},
    {.opcode = -943, .name = "min", .inputs = 2, .rule = Rule::FirstIs, .ruleValue = 0},
    {.opcode = -943, .name = "max", .inputs = 2, .rule = Rule::FirstIs, .ruleValue = 1},
    {.opcode = -936, .name = "luminance", .inputs = 1, .rule = Rule::Given},
    {.opcode = -935,
     .name = "manip",
     .inputs = 2,
     .rule = Rule::Given,
     .style = Style::Channels,
     .inputNames = {"a", "b"}},
    {.opcode = -934, .name = "last of", .inputs = 0, .rule = Rule::Given, .use = SlotUse::KeepsLast},
    {.opcode = -926, .name = "contrast", .inputs = 3, .inputNames = {"value", "bias", "contrast"}},
};

// The reader looks at the first operand of these without asking.
static_assert(std::all_of(std::begin(kOperators), std::end(kOperators), [](const OperatorForm& form) {
    return form.use == SlotUse::TakesInputs || form.rule == OperandRule::Given;
}));

bool fits(const OperatorForm& form, Operands operands)
{
    switch (form.rule) {
    case Rule::Any:
        return true;
    case Rule::Missing:
        return !operands;
    case Rule::Given:
        return operands;
    case Rule::FirstIs:
        return operands && operands[0] == form.ruleValue;
    case Rule::SecondIs:
        return operands && operands[1] == form.ruleValue;
    }
    return false;
}

} // namespace

const SourceLineForm* findSourceLine(std::string_view keyword)
{
    const auto* found = std::find_if(std::begin(kLines), std::end(kLines),
                                     [=](const auto& f) { return f.keyword == keyword; });
    return found == std::end(kLines) ? nullptr : found;
}

const SourceLineForm& bareTransformForm()
{
    return kBareTransform;
}

const OperatorForm* findOperator(int opcode, Operands operands)
{
    for (const OperatorForm& form : kOperators)
        if (form.opcode == opcode && fits(form, operands)) return &form;
    return nullptr;
}

bool isKnownOperator(int opcode)
{
    return !operatorName(opcode).empty();
}

std::string_view operatorName(int opcode)
{
    for (const OperatorForm& form : kOperators)
        if (form.opcode == opcode) return form.name;
    return {};
}

bool needsOperands(int opcode)
{
    return std::none_of(std::begin(kOperators), std::end(kOperators), [=](const OperatorForm& form) {
        return form.opcode == opcode && fits(form, nullptr);
    });
}

} // namespace ombrix
