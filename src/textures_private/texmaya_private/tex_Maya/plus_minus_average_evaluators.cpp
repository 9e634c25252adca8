#include "textures_private/texmaya_private/tex_Maya/plus_minus_average_evaluators.h"

#include "kernels/color/plus_minus_average.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"
#include "textures_private/texmaya_private/tex_Maya/operator_source.h"

namespace nezaiva {

namespace {

constexpr int kAddOperator = -983;          // adds two slots
constexpr int kMultiplyOperator = -998;     // multiplies two slots
constexpr int kColorToFloatOperator = -973; // turns a colour slot into a float

// What an entry that adds nothing contributes to bounds.
constexpr FloatRange kNoFloat{0.0f, 0.0f};
constexpr ColorRange kNoColor{};

// Kept as is: the sum that is taken away loses its sign by this colour, but its green becomes 0.
constexpr AColor kNegative{-1.0f, 0.0f, -1.0f, -1.0f};

// One slot for each input, then what combines them.
template <class Inputs>
void writeCombination(OperatorSource& text, const Inputs& inputs, int operation)
{
    const int count = inputs.count();
    for (int i = 0; i < count; ++i)
        text.inputSlot(inputs[i]);
    if (operation == kSubtractFromFirst) {
        for (int i = 2; i < count; ++i) {
            text.builtin(kAddOperator);
            text.endSlot();
        }
        text.color(kNegative);
        text.endSlot();
        text.builtin(kMultiplyOperator);
        text.endSlot();
        text.builtin(kAddOperator);
        return;
    }
    for (int i = 1; i < count; ++i) {
        if (i > 1) text.endSlot();
        text.builtin(kAddOperator);
    }
    text.operands(0.0f, operation == kAverage ? static_cast<float>(count) : 1.0f);
}

// 0 when there is no input, or when the only one has no source; otherwise 1, also for operations that write
// nothing.
template <class Inputs>
int writeInputs(OperatorSource& text, const Inputs& inputs, int operation)
{
    if (inputs.count() == 0) return 0;
    if (inputs.count() == 1) return text.input(inputs[0]) ? 1 : 0;
    switch (operation) {
    case kFirstOnly:
        text.input(inputs[0]);
        break;
    case kSum:
    case kSubtractFromFirst:
    case kAverage:
        writeCombination(text, inputs, operation);
        break;
    default:
        break;
    }
    return 1;
}

} // namespace

PluginInterface* TexPlusMinusAverage1d::getInterface(InterfaceId id)
{
    if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
    if (id == EXT_TEXTURE_FLOAT) return static_cast<TextureFloatInterface*>(this);
    return PluginBase::getInterface(id);
}

void TexPlusMinusAverage1d::frameBegin()
{
    inputs.resolve(*list, EXT_TEXTURE_FLOAT);
    memo.reset();
}

float TexPlusMinusAverage1d::evalFloat(const OmbrixContext& context)
{
    FloatCacheEntry* entry = memo.entryFor(context, noTexCache);
    if (entry && entry->sampleStamp == context.sampleStamp) return entry->value;
    const float result = plusMinusAverage<float>(*operation, inputs.count(),
                                                 [&](int i) { return floatOr(inputs[i], 0.0f, context); });
    if (entry) {
        entry->sampleStamp = context.sampleStamp;
        entry->value = result;
    }
    return result;
}

void TexPlusMinusAverage1d::evalFloatBounds(float* lower, float* upper)
{
    using Range = ValueRange<float>;
    const Range range = plusMinusAverage<Range>(*operation, inputs.count(), [this](int i) {
        const FloatRange input = rangeOr(inputs[i], kNoFloat);
        return Range{input.lower, input.upper};
    });
    *lower = range.lower;
    *upper = range.upper;
}

int TexPlusMinusAverage1d::getSource(const char* name, const char* tag, const char* descriptor,
                                     ShaderSource& source, OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    OperatorSource text(name, tag, descriptor, source, data);
    if (!writeInputs(text, inputs, *operation)) return 0;
    text.endSlot();
    text.builtin(kColorToFloatOperator);
    return 1;
}

PluginInterface* TexPlusMinusAverage3d::getInterface(InterfaceId id)
{
    if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
    if (id == EXT_TEXTURE) return static_cast<TextureInterface*>(this);
    return PluginBase::getInterface(id);
}

void TexPlusMinusAverage3d::frameBegin()
{
    inputs.resolve(*list, EXT_TEXTURE);
    memo.reset();
}

AColor* TexPlusMinusAverage3d::evalColor(AColor* result, const OmbrixContext& context)
{
    if (const AColor* known = memo.find(context)) {
        *result = *known;
        return result;
    }
    *result = plusMinusAverage<AColor>(*operation, inputs.count(),
                                       [&](int i) { return colorOr(inputs[i], AColor{}, context); });
    memo.store(context, *result);
    return result;
}

void TexPlusMinusAverage3d::evalColorBounds(AColor* lower, AColor* upper)
{
    using Range = ValueRange<AColor>;
    const Range range = plusMinusAverage<Range>(*operation, inputs.count(), [this](int i) {
        const ColorRange input = rangeOr(inputs[i], kNoColor);
        return Range{input.lower, input.upper};
    });
    *lower = range.lower;
    *upper = range.upper;
}

int TexPlusMinusAverage3d::getSource(const char* name, const char* tag, const char* descriptor,
                                     ShaderSource& source, OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    OperatorSource text(name, tag, descriptor, source, data);
    return writeInputs(text, inputs, *operation);
}

} // namespace nezaiva
