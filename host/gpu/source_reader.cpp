#include "host/gpu/source_reader.h"

#include "host/gpu/source_lines.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

namespace ombrix {
namespace {

using Kind = SourceLineKind;
using Weight = SourceProblem::Weight;
constexpr std::uint32_t kNone = SourceSlot::kNone;

// What a texture writes for a bitmap that the host did not take. No operator has this number.
constexpr int kNotStored = -1;

std::string operatorText(int opcode, std::string_view name)
{
    return "bitmap " + std::to_string(opcode) + " (" + std::string(name) + ")";
}

std::string operatorText(const OperatorForm& form)
{
    return operatorText(form.opcode, form.name);
}

std::string slotCount(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " slot" : " slots");
}

class Reader {
public:
    Reader(std::string text, const SourceReaderOptions& readerOptions) : options(readerOptions)
    {
        reading.text = std::move(text);
    }

    SourceReading read()
    {
        std::string_view rest = reading.text;
        while (!rest.empty()) {
            ++lineNumber;
            const std::size_t end = rest.find('\n');
            if (end == std::string_view::npos)
                problem(Weight::Remark, lineNumber, "the last line has no end");
            readLine(rest.substr(0, end));
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        }
        closeSlot();
        finish();
        return std::move(reading);
    }

private:
    void problem(Weight weight, std::uint32_t line, std::string message)
    {
        reading.problems.push_back({weight, line, std::move(message)});
    }
    void error(std::uint32_t line, std::string message) { problem(Weight::Error, line, std::move(message)); }

    void readLine(std::string_view line)
    {
        const auto start = static_cast<std::uint32_t>(line.data() - reading.text.data());
        SourceLine read{nullptr, Kind::Foreign, lineNumber, start, static_cast<std::uint32_t>(line.size()),
                        0};
        if (!options.isForeign || !options.isForeign(line)) {
            read.firstNumber = static_cast<std::uint32_t>(reading.numbers.size());
            const SourceLineText parsed = parseSourceLine(line, reading.numbers);
            read.form = parsed.form;
            read.kind = parsed.form ? parsed.form->kind : Kind::Unknown;
            if (!parsed.fault.empty())
                error(lineNumber, parsed.fault);
            else if (parsed.hasOddNumber)
                problem(Weight::Remark, lineNumber, "a number is not finite: " + quotedSource(line));
            // Operands that cannot be read are not missing, too; other lines have then said nothing.
            if (!parsed.fault.empty() && read.kind != Kind::Transform && read.kind != Kind::Subtexture) {
                reading.numbers.resize(read.firstNumber);
                read.kind = Kind::Unknown;
            }
        }
        if (read.kind == Kind::Subtexture)
            closeSlot();
        else
            reading.lines.push_back(read);
    }

    // The lines since the last slot become a slot.
    void closeSlot()
    {
        SourceSlot slot;
        slot.firstLine = nextSlotLine;
        slot.lineCount = static_cast<std::uint32_t>(reading.lines.size()) - nextSlotLine;
        nextSlotLine += slot.lineCount;
        slot.lineNumber =
            slot.lineCount > 0 ? reading.lines[slot.firstLine].number : std::max(lineNumber, 1u);
        slot.setFor = std::exchange(settingsFor, nullptr);
        slot.firstInput = static_cast<std::uint32_t>(reading.inputs.size());
        findBitmap(slot);
        const bool isOperator = slot.bitmapLine != kNone && bitmapOf(slot) < kNotStored;
        findOperands(slot, isOperator);
        if (slot.setFor) checkSettings(slot);
        if (isOperator)
            useOperator(slot);
        else if (slot.bitmapLine != kNone)
            checkBitmap(slot);
        checkLines(slot);
        reading.slots.push_back(slot);
        reading.results.push_back(static_cast<std::uint32_t>(reading.slots.size()) - 1);
    }

    int bitmapOf(const SourceSlot& slot) const
    {
        return static_cast<int>(*reading.numbersOf(reading.lines[slot.bitmapLine]));
    }

    void findBitmap(SourceSlot& slot)
    {
        for (std::uint32_t i = slot.firstLine; i < slot.firstLine + slot.lineCount; ++i) {
            const SourceLine& line = reading.lines[i];
            if (line.kind != Kind::Bitmap) continue;
            if (slot.bitmapLine != kNone) {
                error(line.number, "a second bitmap in one slot; \"subtex\" is missing before it");
                return;
            }
            slot.bitmapLine = i;
            slot.lineNumber = line.number;
        }
    }

    // A transform before a map channel is a placement; one beside an image is, too.
    void findOperands(SourceSlot& slot, bool isOperator)
    {
        if (!isOperator && !slot.setFor) return;
        const std::uint32_t end = slot.firstLine + slot.lineCount;
        for (std::uint32_t i = slot.firstLine; i < end; ++i) {
            const SourceLine& line = reading.lines[i];
            if (line.kind != Kind::Transform) continue;
            if (i + 1 < end && reading.lines[i + 1].kind == Kind::MapChannel) continue;
            if (slot.operands == kNone)
                slot.operands = line.firstNumber;
            else
                error(line.number, "a second uvw_transform in one slot");
        }
    }

    void checkSettings(SourceSlot& slot)
    {
        const std::string name(slot.setFor->name);
        if (slot.bitmapLine == kNone && slot.operands != kNone) {
            takeInputs(slot, 1, name + " settings");
            return;
        }
        error(slot.lineNumber, "the slot after " + operatorText(*slot.setFor) +
                                   " must hold its settings, a uvw_transform and no bitmap");
        slot.setFor = nullptr;
    }

    void checkBitmap(const SourceSlot& slot)
    {
        const int index = bitmapOf(slot);
        if (index == kNotStored) {
            if (!options.mayLackBitmaps) error(slot.lineNumber, "bitmap -1: the bitmap could not be stored");
            return;
        }
        if (!options.bitmaps || static_cast<std::size_t>(index) < *options.bitmaps) return;
        error(slot.lineNumber, "bitmap " + std::to_string(index) + " does not exist; the data holds " +
                                   std::to_string(*options.bitmaps) +
                                   (*options.bitmaps == 1 ? " bitmap" : " bitmaps"));
    }

    void useOperator(SourceSlot& slot)
    {
        const int opcode = bitmapOf(slot);
        slot.form = findOperator(opcode, reading.operandsOf(slot));
        if (!slot.form) {
            tellWhyUnknown(slot, opcode);
            return;
        }
        switch (slot.form->use) {
        case SlotUse::TakesInputs:
            takeInputs(slot, static_cast<std::size_t>(slot.form->inputs), operatorText(*slot.form));
            break;
        case SlotUse::Repeats:
            repeatSlot(slot);
            break;
        case SlotUse::KeepsLast:
            keepLast(slot);
            break;
        }
        if (slot.form->settingsFollow) {
            settingsFor = slot.form;
            if (openNoises == 0)
                error(slot.lineNumber, operatorText(*slot.form) + " without a maya_noise line");
            openNoises -= openNoises > 0;
        }
    }

    void tellWhyUnknown(const SourceSlot& slot, int opcode)
    {
        const Operands operands = reading.operandsOf(slot);
        const std::string known = operatorText(opcode, operatorName(opcode));
        if (!isKnownOperator(opcode))
            error(slot.lineNumber, "bitmap " + std::to_string(opcode) + " is no operator");
        else if (!operands && needsOperands(opcode))
            error(slot.lineNumber, known + " lacks its operands, a uvw_transform line");
        else
            error(slot.lineNumber,
                  known + " has no operation " + std::to_string(operands ? operands[0] : 0.0));
    }

    void takeInputs(SourceSlot& slot, std::size_t count, const std::string& taker)
    {
        std::vector<std::uint32_t>& stack = reading.results;
        if (count > stack.size()) {
            error(slot.lineNumber, taker + " takes " + slotCount(count) + " and only " +
                                       std::to_string(stack.size()) +
                                       (stack.size() == 1 ? " is there" : " are there"));
            count = stack.size();
        }
        const std::size_t first = stack.size() - count;
        for (std::size_t i = first; i < stack.size(); ++i) {
            const SourceSlot& input = reading.slots[stack[i]];
            if (input.lineCount == 0 && !(slot.form && slot.form->mayLackInput)) {
                ++reading.emptyInputs;
                problem(Weight::Remark, input.lineNumber,
                        "the slot is empty, and " + taker + " on line " + std::to_string(slot.lineNumber) +
                            " takes it");
            }
            reading.inputs.push_back(stack[i]);
        }
        stack.resize(first);
        slot.inputCount = static_cast<std::uint32_t>(count);
    }

    // The first operand as a count. NaN and fractions are none.
    std::optional<std::size_t> countOperand(const SourceSlot& slot)
    {
        const double value = reading.operandsOf(slot)[0];
        if (value >= 0.0 && value < 1e15 && value == std::floor(value))
            return static_cast<std::size_t>(value);
        error(slot.lineNumber, operatorText(*slot.form) + " needs a whole first operand of 0 or above");
        return std::nullopt;
    }

    void repeatSlot(SourceSlot& slot)
    {
        const std::optional<std::size_t> offset = countOperand(slot);
        if (!offset) return;
        const std::vector<std::uint32_t>& stack = reading.results;
        if (*offset >= stack.size()) {
            error(slot.lineNumber, operatorText(*slot.form) + " reaches " + slotCount(*offset + 1) +
                                       " down and only " + std::to_string(stack.size()) +
                                       (stack.size() == 1 ? " is there" : " are there"));
            return;
        }
        const std::uint32_t found = stack[stack.size() - 1 - *offset];
        slot.repeated = reading.slots[found].repeated == kNone ? found : reading.slots[found].repeated;
    }

    void keepLast(SourceSlot& slot)
    {
        if (const std::optional<std::size_t> count = countOperand(slot))
            takeInputs(slot, *count + 1, operatorText(*slot.form));
    }

    // Lines that only some slots may hold.
    void checkLines(const SourceSlot& slot)
    {
        const bool isOperator = slot.form != nullptr;
        for (std::uint32_t i = slot.firstLine; i < slot.firstLine + slot.lineCount; ++i) {
            const SourceLine& line = reading.lines[i];
            switch (line.kind) {
            case Kind::NoiseBegin:
                ++openNoises;
                lastNoiseLine = line.number;
                break;
            case Kind::NoiseSetting:
                if (!slot.setFor)
                    error(line.number,
                          std::string(line.form->keyword) + " outside the settings of maya noise");
                break;
            case Kind::BareTransform:
                if (!isOperator || !slot.form->takesBareNumbers)
                    error(line.number, "twelve numbers without the word uvw_transform");
                break;
            case Kind::MapChannel:
            case Kind::Placement:
                if (isOperator && !slot.form->takesPlacement)
                    error(line.number, operatorText(*slot.form) + " has no coordinates, but \"" +
                                           std::string(line.form->keyword) + "\" stands in its slot");
                break;
            default:
                break;
            }
        }
    }

    void finish()
    {
        if (settingsFor)
            error(lineNumber, operatorText(*settingsFor) + " lacks its settings, a slot after its own");
        if (openNoises > 0) error(lastNoiseLine, "maya_noise without its operator, bitmap -968");
        // After an operator that was not understood, the count says nothing.
        if (reading.results.size() > 1 && reading.understood())
            error(lineNumber,
                  slotCount(reading.results.size()) + " are left at the end, and one is the result");
        std::stable_sort(reading.problems.begin(), reading.problems.end(),
                         [](const auto& a, const auto& b) { return a.lineNumber < b.lineNumber; });
    }

    SourceReading reading;
    const SourceReaderOptions& options;
    std::uint32_t lineNumber = 0, nextSlotLine = 0, lastNoiseLine = 0;
    std::size_t openNoises = 0;
    const OperatorForm* settingsFor = nullptr;
};

} // namespace

bool SourceReading::understood() const
{
    return std::none_of(problems.begin(), problems.end(),
                        [](const SourceProblem& problem) { return problem.weight == Weight::Error; });
}

std::string_view SourceReading::textOf(const SourceLine& line) const
{
    return std::string_view(text).substr(line.start, line.length);
}

const double* SourceReading::numbersOf(const SourceLine& line) const
{
    return numbers.data() + line.firstNumber;
}

Operands SourceReading::operandsOf(const SourceSlot& slot) const
{
    return slot.operands == SourceSlot::kNone ? nullptr : numbers.data() + slot.operands;
}

SourceReading readSource(std::string text, const SourceReaderOptions& options)
{
    if (text.size() >= std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("a GPU source of 4 GiB or more");
    return Reader(std::move(text), options).read();
}

std::string problemText(const SourceProblem& problem)
{
    return "line " + std::to_string(problem.lineNumber) + ": " + problem.message;
}

} // namespace ombrix
