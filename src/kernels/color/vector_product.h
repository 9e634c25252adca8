// The arithmetic of TexVectorProduct, on plain values.
#pragma once

#include "numeric/vector_math.h"

namespace nezaiva {

// The scene's numbers.
enum VectorOperation : int {
    kNoOperation = 0,
    kDotProduct = 1,
    kCrossProduct = 2,
    kVectorMatrixProduct = 3,
    kPointMatrixProduct = 4,
};

struct VectorProductInputs {
    Vector input1, input2;
    Transform transform;
};

// unknown is the product of an operation outside the enumeration. A dot product stands in all three
// components; normalize applies to its inputs, and to the result of all others but the point's.
inline Vector vectorProduct(const VectorProductInputs& in, int operation, bool normalize,
                            const Vector& unknown)
{
    Vector product = unknown;
    switch (operation) {
    case kNoOperation:
        product = in.input1;
        break;
    case kDotProduct: {
        const float dot = normalize ? dotProduct(safelyNormalized(in.input1), safelyNormalized(in.input2))
                                    : dotProduct(in.input1, in.input2);
        return {dot, dot, dot};
    }
    case kCrossProduct:
        product = crossProduct(in.input1, in.input2);
        break;
    case kVectorMatrixProduct:
        product = in.transform.matrix * in.input1;
        break;
    case kPointMatrixProduct:
        // Kept as is: points are never normalised.
        return transformedPoint(in.transform, in.input1);
    default:
        break;
    }
    return normalize ? safelyNormalized(product) : product;
}

} // namespace nezaiva
