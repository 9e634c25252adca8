// The vocabulary of GPU source text: which lines there are, what numbers stand on them, and how many slots
// each built-in operator takes. What a texture may write stands here once; the reader and the tree look it
// up.
#pragma once

#include <array>
#include <string_view>

namespace ombrix {

enum class SourceLineKind {
    Subtexture, // ends a slot and opens the next
    Color,      // a constant, or what stands where the coordinates end
    Bitmap,     // an image (0 and above) or an operator (below 0)
    Transform,  // twelve numbers: a placement, an operator's operands, or settings
    BareTransform,
    MapChannel,
    Placement,      // ends the lines of a coordinate generator
    PlacementBlock, // the generator's parameter block
    Note,           // changes the slot's result, or how it is looked up
    NoiseBegin,
    NoiseSetting,
    Foreign, // a line that the caller vouches for
    Unknown,
};

enum class SourceNumbers { None, Floats, Whole };

// A line: its first word, then its numbers. Twelve numbers are parted by commas, others by blanks.
struct SourceLineForm {
    std::string_view keyword;
    SourceLineKind kind;
    SourceNumbers numbers;
    int count;
    std::string_view phrase; // for people
};

// By the line's first word; null when no texture writes such a line.
const SourceLineForm* findSourceLine(std::string_view keyword);
// The form of twelve numbers without a first word.
const SourceLineForm& bareTransformForm();

constexpr int kOperandCount = 12;
constexpr int kMostInputNames = 7;

// What an operator does with the stack of slots below its own.
enum class SlotUse {
    TakesInputs, // takes the topmost slots and leaves its own in their place
    Repeats,     // takes none; its first operand tells how far down the slot lies that it repeats
    KeepsLast,   // takes one more than its first operand, and leaves the last of them
};

// Which operands a form of an operator is chosen by. The first form that fits is the one.
enum class OperandRule { Any, Missing, Given, FirstIs, SecondIs };

// How the operands read.
enum class OperandStyle { Silent, Comparison, Arithmetic, Channels, Attribute, Divisor };

struct OperatorForm {
    int opcode;
    std::string_view name; // for people
    int inputs;            // slots taken, for SlotUse::TakesInputs
    OperandRule rule = OperandRule::Any;
    int ruleValue = 0;
    OperandStyle style = OperandStyle::Silent;
    std::array<std::string_view, kMostInputNames> inputNames{}; // empty where the order says it all
    SlotUse use = SlotUse::TakesInputs;
    bool takesPlacement = false;   // its slot holds the lines of a coordinate generator
    bool settingsFollow = false;   // the next slot holds its settings
    bool mayLackInput = false;     // an empty slot is right for it
    bool takesBareNumbers = false; // twelve numbers may stand without a word
};

// The operands of a slot; null without any.
using Operands = const double*;

// Null when no form of this operator fits; isKnownOperator tells why.
const OperatorForm* findOperator(int opcode, Operands operands);
bool isKnownOperator(int opcode);
// The first form of a known operator.
std::string_view operatorName(int opcode);
// Whether every form of a known operator has operands.
bool needsOperands(int opcode);

} // namespace ombrix
