#include "textures_private/texmaya_private/tex_Maya/plus_minus_average_evaluators.h"

#include "kernels/color/plus_minus_average.h"

namespace nezaiva {

namespace {

// Kept as is: the sum that is taken away loses its sign by this colour, but its green becomes 0.
constexpr AColor kNegative{-1.0f, 0.0f, -1.0f, -1.0f};

// One slot for each input, then what combines them.
template <class Inputs>
void writeCombination(SourceText& text, const Inputs& inputs, int operation)
{
    const int count = inputs.count();
    for (int i = 0; i < count; ++i)
        text.slot(inputs[i]);
    if (operation == kSubtractFromFirst) {
        for (int i = 2; i < count; ++i) {
            text.op(GpuOperator::AddSlots);
            text.endSlot();
        }
        text.slot(kNegative);
        text.op(GpuOperator::MultiplySlots);
        text.endSlot();
        text.op(GpuOperator::AddSlots);
        return;
    }
    for (int i = 1; i < count; ++i) {
        if (i > 1) text.endSlot();
        text.op(GpuOperator::AddSlots);
    }
    text.operands({0.0f, operation == kAverage ? static_cast<float>(count) : 1.0f});
}

// 0 when there is no input, or when the only one has no source; otherwise 1, also for operations that write
// nothing.
template <class Inputs>
int writeInputs(SourceText& text, const Inputs& inputs, int operation)
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

// An entry of a list as an input, which reads as zero when it is null.
FloatInput inputOf(TextureFloatInterface* entry)
{
    return {{entry}, 0.0f};
}
ColorInput inputOf(TextureInterface* entry)
{
    return {{entry}, AColor{}};
}

} // namespace

float TexPlusMinusAverage1d::evalFloat(const OmbrixContext& context)
{
    float own = 0.0f;
    return memo.getOr(context, noTexCache, own, [&] {
        return plusMinusAverage<float>(*operation, inputs->count(),
                                       [&](int i) { return inputOf((*inputs)[i])(context); });
    });
}

void TexPlusMinusAverage1d::evalFloatBounds(float* lower, float* upper)
{
    using Range = ValueRange<float>;
    const Range range = plusMinusAverage<Range>(*operation, inputs->count(), [this](int i) {
        const FloatRange input = inputOf((*inputs)[i]).bounds();
        return Range{input.lower, input.upper};
    });
    *lower = range.lower;
    *upper = range.upper;
}

int TexPlusMinusAverage1d::writeSource(SourceText& text)
{
    if (!writeInputs(text, *inputs, *operation)) return 0;
    text.endSlot();
    text.op(GpuOperator::ColorToFloat);
    return 1;
}

AColor* TexPlusMinusAverage3d::evalColor(AColor* result, const OmbrixContext& context)
{
    *result = memo.getOr(context, [&] {
        return plusMinusAverage<AColor>(*operation, inputs->count(),
                                        [&](int i) { return inputOf((*inputs)[i])(context); });
    });
    return result;
}

void TexPlusMinusAverage3d::evalColorBounds(AColor* lower, AColor* upper)
{
    using Range = ValueRange<AColor>;
    const Range range = plusMinusAverage<Range>(*operation, inputs->count(), [this](int i) {
        const ColorRange input = inputOf((*inputs)[i]).bounds();
        return Range{input.lower, input.upper};
    });
    *lower = range.lower;
    *upper = range.upper;
}

int TexPlusMinusAverage3d::writeSource(SourceText& text)
{
    return writeInputs(text, *inputs, *operation);
}

} // namespace nezaiva
