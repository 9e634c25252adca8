// Reads GPU source text into slots, the way that a consumer of the text would, and tells what it could not
// understand.
//
// A source is a list of slots parted by "subtex" lines. Slots go onto a stack: an operator takes the
// topmost ones and leaves its own, so that at the end one slot is left, the source's result.
#pragma once

#include "host/gpu/source_vocabulary.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

struct SourceReaderOptions {
    // How many bitmaps the OCLData holds; without it no index is too large.
    std::optional<std::size_t> bitmaps;
    // Whether "bitmap -1" may stand for a baked bitmap that the host did not take.
    bool mayLackBitmaps = false;
    // Vouches for lines that are not in the vocabulary: the text of textures of someone else's.
    std::function<bool(std::string_view line)> isForeign;
};

struct SourceLine {
    const SourceLineForm* form; // null for lines that are not in the vocabulary
    SourceLineKind kind;
    std::uint32_t number;        // from 1
    std::uint32_t start, length; // in the text, without the newline
    std::uint32_t firstNumber;   // in SourceReading::numbers; as many as the form says
};

struct SourceSlot {
    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;

    std::uint32_t lineNumber = 0; // of the line that says most about it
    std::uint32_t firstLine = 0, lineCount = 0;
    std::uint32_t bitmapLine = kNone; // in SourceReading::lines
    std::uint32_t operands = kNone;   // in SourceReading::numbers
    std::uint32_t firstInput = 0, inputCount = 0;
    std::uint32_t repeated = kNone;       // the slot that it repeats
    const OperatorForm* form = nullptr;   // of an operator that was understood
    const OperatorForm* setFor = nullptr; // the operator whose settings the slot holds
};

struct SourceProblem {
    enum class Weight {
        Remark, // odd, but a consumer can go on
        Error,  // not understood
    };
    Weight weight;
    std::uint32_t lineNumber;
    std::string message;
};

struct SourceReading {
    std::string text;
    std::vector<SourceLine> lines; // without the "subtex" ones
    std::vector<double> numbers;
    std::vector<SourceSlot> slots;       // in the order of the text; never empty
    std::vector<std::uint32_t> inputs;   // of all slots, as indices of slots
    std::vector<std::uint32_t> results;  // what is left on the stack, the last one on top
    std::vector<SourceProblem> problems; // by line
    std::size_t emptyInputs = 0; // how many slots an operator takes that hold nothing; each has a remark

    bool understood() const; // no error among the problems
    std::string_view textOf(const SourceLine& line) const;
    const double* numbersOf(const SourceLine& line) const;
    Operands operandsOf(const SourceSlot& slot) const;
};

// Takes any bytes up to 4 GiB; what cannot be understood is told in the problems. Takes time and memory in
// proportion to the text, and no stack for its depth. Throws std::length_error for a longer text,
// std::bad_alloc.
SourceReading readSource(std::string text, const SourceReaderOptions& options = {});

// "line 3: the message".
std::string problemText(const SourceProblem& problem);

} // namespace ombrix
