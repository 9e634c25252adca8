#include "host/gpu/source_slot_text.h"

#include "host/gpu/source_lines.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace ombrix {
namespace {

using Kind = SourceLineKind;

// The shortest text that reads back the same.
std::string numberText(double value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    return {text, end};
}

std::string listText(const double* values, int count, const char* separator)
{
    std::string text = "(";
    for (int i = 0; i < count; ++i)
        text += (i > 0 ? separator : "") + numberText(values[i]);
    return text + ")";
}

// One number for a grey whose alpha is the same.
std::string colorText(const double* rgba)
{
    if (std::all_of(rgba, rgba + 4, [=](double channel) { return channel == rgba[0]; }))
        return numberText(rgba[0]);
    return listText(rgba, 4, ", ");
}

// A number that indexes a table of words; the number itself outside of it.
template <std::size_t kCount>
std::string wordAt(const std::string_view (&words)[kCount], double index, const char* otherwise)
{
    if (index >= 0.0 && index < static_cast<double>(kCount) && index == std::floor(index))
        return std::string(words[static_cast<std::size_t>(index)]);
    return otherwise + numberText(index);
}

std::string channelsText(Operands operands)
{
    static constexpr std::string_view kOperations[] = {"0", "1", "+", "-", "*", "/", "g"};
    static constexpr std::string_view kSelectors[] = {"0", "x", "y", "z", "w"};
    std::string text = " (";
    for (int i = 0; i < 4; ++i)
        text += (i > 0 ? " " : "") + wordAt(kOperations, operands[i], "");
    text += ")";
    if (std::all_of(operands + 4, operands + 8, [](double selector) { return selector == 0.0; })) return text;
    text += " (";
    for (int i = 4; i < 8; ++i)
        text += (i > 4 ? " " : "") + wordAt(kSelectors, operands[i], "");
    return text + ")";
}

std::string operandText(const OperatorForm& form, Operands operands)
{
    static constexpr std::string_view kComparisons[] = {"==", "!=", "<", ">", "<=", ">="};
    static constexpr std::string_view kArithmetic[] = {"first alone", "multiply", "divide", "power"};
    static constexpr std::string_view kTypes[] = {"color", "float", "integer"};
    if (!operands) return {};
    switch (form.style) {
    case OperandStyle::Silent:
        return {};
    case OperandStyle::Comparison:
        return " " + wordAt(kComparisons, operands[0], "operation ");
    case OperandStyle::Arithmetic:
        return ": " + wordAt(kArithmetic, operands[0], "operation ");
    case OperandStyle::Channels:
        return channelsText(operands);
    case OperandStyle::Attribute:
        return " " + numberText(operands[0]) + ", " + wordAt(kTypes, operands[1], "type ");
    case OperandStyle::Divisor:
        return operands[1] == 1.0 ? std::string() : ", divided by " + numberText(operands[1]);
    }
    return {};
}

bool isIdentity(const double* columns)
{
    for (int i = 0; i < kOperandCount; ++i)
        if (columns[i] != (i == 0 || i == 4 || i == 8 ? 1.0 : 0.0)) return false;
    return true;
}

std::string transformText(const double* columns)
{
    std::string text = "columns";
    for (int i = 0; i < 9; i += 3)
        text += " " + listText(columns + i, 3, ", ");
    return text + " offset " + listText(columns + 9, 3, ", ");
}

// The settings of Maya's noise: a word of four fields, then numbers.
std::string noiseShapeText(Operands operands)
{
    std::string text;
    const double packed = operands[0];
    if (packed >= 0.0 && packed < 256.0) {
        const auto word = static_cast<unsigned>(packed);
        text = "type " + std::to_string(word & 7u) + ", dimensions " + std::to_string(word >> 3 & 3u) +
               ", falloff " + std::to_string(word >> 5 & 3u) + ", inflection " + std::to_string(word >> 7);
    } else {
        text = "packed word " + numberText(packed);
    }
    return text + ", waves " + numberText(operands[9]) + ", depth " + numberText(operands[10]) + ", time " +
           numberText(operands[11]);
}

std::string noiseMeansText(Operands operands)
{
    static constexpr const char* kNames[] = {"amplitude", "ratio",      "frequency", "frequency ratio",
                                             "density",   "spottyness", "size rand", "randomness"};
    std::string text;
    for (std::size_t i = 0; i < std::size(kNames); ++i)
        text += std::string(i > 0 ? ", " : "") + kNames[i] + " " + numberText(operands[i + 1]);
    return text;
}

class Describer {
public:
    Describer(const SourceReading& source, const SourceSlot& described, const SourceTreeOptions& treeOptions)
        : reading(source), slot(described), options(treeOptions)
    {
    }

    SlotWords describe()
    {
        describeHead();
        for (std::uint32_t i = slot.firstLine; i < slot.firstLine + slot.lineCount; ++i)
            if (i != headLine) describeLine(reading.lines[i]);
        if (!coordinates.empty()) {
            if (words.headline.empty() && slot.repeated == SourceSlot::kNone) words.headline = "coordinates";
            words.details.push_back("uvw: " + coordinates);
        }
        if (words.headline.empty() && slot.repeated == SourceSlot::kNone) words.headline = "(empty)";
        if (slot.setFor) {
            words.details.push_back(noiseShapeText(reading.operandsOf(slot)));
            words.details.push_back(noiseMeansText(reading.operandsOf(slot)));
        }
        return words;
    }

private:
    void describeHead()
    {
        if (slot.repeated != SourceSlot::kNone) return;
        if (slot.setFor) {
            words.headline = std::string(slot.setFor->name) + " settings";
        } else if (slot.bitmapLine != SourceSlot::kNone) {
            describeBitmap(static_cast<int>(*reading.numbersOf(reading.lines[slot.bitmapLine])));
        } else {
            describeConstant();
        }
    }

    void describeBitmap(int index)
    {
        const std::string number = std::to_string(index);
        if (slot.form) {
            words.headline = std::string(slot.form->name);
            if (slot.form->use == SlotUse::KeepsLast) words.headline += " " + std::to_string(slot.inputCount);
            words.headline += operandText(*slot.form, reading.operandsOf(slot)) + " [" + number + "]";
            return;
        }
        words.headline = "bitmap " + number;
        if (index < 0) {
            words.headline += index == -1 ? " (not stored)" : " (not understood)";
        } else if (options.describeBitmap) {
            const std::string more = options.describeBitmap(index);
            if (!more.empty()) words.headline += " " + more;
        }
    }

    // The first line that gives a value.
    void describeConstant()
    {
        for (std::uint32_t i = slot.firstLine; i < slot.firstLine + slot.lineCount; ++i) {
            const SourceLine& line = reading.lines[i];
            if (line.kind != Kind::Color && line.kind != Kind::Foreign) continue;
            headLine = i;
            words.headline = line.kind == Kind::Color ? "color " + colorText(reading.numbersOf(line))
                                                      : quotedSource(reading.textOf(line));
            return;
        }
    }

    void note(const std::string& text) { words.headline += (words.headline.empty() ? "" : ", ") + text; }
    void coordinate(const std::string& text) { coordinates += (coordinates.empty() ? "" : ", ") + text; }

    void describeLine(const SourceLine& line)
    {
        const double* numbers = reading.numbersOf(line);
        const std::string phrase(line.form ? line.form->phrase : std::string_view{});
        switch (line.kind) {
        case Kind::Color:
            note("color " + colorText(numbers));
            break;
        case Kind::Note:
            if (line.form->count == 0)
                note(phrase);
            else
                note(phrase + " " + (line.form->count == 4 ? colorText(numbers) : numberText(*numbers)));
            break;
        case Kind::NoiseSetting:
        case Kind::NoiseBegin:
            if (line.kind == Kind::NoiseSetting) note(phrase);
            break;
        case Kind::BareTransform:
            note("numbers " + listText(numbers, kOperandCount, " "));
            break;
        case Kind::Transform:
            if (line.firstNumber != slot.operands && !isIdentity(numbers)) coordinate(transformText(numbers));
            break;
        case Kind::MapChannel:
        case Kind::PlacementBlock:
            coordinate(phrase + " " + numberText(*numbers));
            break;
        case Kind::Placement:
            coordinate(phrase);
            break;
        case Kind::Foreign:
            note(quotedSource(reading.textOf(line)));
            break;
        case Kind::Unknown:
            note("not understood: " + quotedSource(reading.textOf(line)));
            break;
        case Kind::Subtexture:
        case Kind::Bitmap:
            break;
        }
    }

    const SourceReading& reading;
    const SourceSlot& slot;
    const SourceTreeOptions& options;
    SlotWords words;
    std::string coordinates;
    std::uint32_t headLine = SourceSlot::kNone;
};

} // namespace

SlotWords wordsOf(const SourceReading& reading, const SourceSlot& slot, const SourceTreeOptions& options)
{
    return Describer(reading, slot, options).describe();
}

} // namespace ombrix
