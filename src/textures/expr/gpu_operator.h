// The built-in operators of the GPU's stack machine: what a negative number after "bitmap" means. Each
// consumes the slots before it.
#pragma once

namespace nezaiva {

enum class GpuOperator : int {
    Contrast = -926,
    Finish = -934, // ends an expression
    Manip = -935,
    Luminance = -936,
    MinMax = -943,
    Abs = -944,
    Lerp = -945,
    Overlay = -946,
    Compare = -947,   // its first operand is the comparison
    Condition = -948, // the slots condition, B, alpha of B, A, alpha of A
    Clamp = -951,
    Reference = -952,
    SetRange = -955, // five slots
    MultiplyDivide = -956,
    HsvToRgb = -965,
    MayaNoise = -968,
    FacingRatio = -971,
    Coordinates = -972,
    ColorToFloat = -973,
    AlphaAsColor = -974,
    AddColors = -979,
    MultiplyColors = -980,
    AddAlphas = -981,
    MultiplyAlphas = -982,
    AddSlots = -983,
    RgbToHsv = -987,
    MultiplySlots = -998,
    ColorMatrix = -999,
};

} // namespace nezaiva
