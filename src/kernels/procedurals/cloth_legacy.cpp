#include "kernels/noises/perlin_noise.h"
#include "kernels/procedurals/cloth.h"
#include "kernels/procedurals/cloth_sines.h"
#include "numeric/cell_index.h"

#include <cmath>

namespace nezaiva {

using namespace OUtils;

namespace {

constexpr float kSmallestAmount = 1e-5f; // what is not above it is not there
// Kept as is: shorter than that of the accurate weave.
constexpr float kLegacyTurn = 6.28318f;
constexpr float kHalfTurn = 3.1415927f;
constexpr float kSpreadScale = 0.2f;

AColor blend(const AColor& gap, const AColor& thread, float t)
{
    const float rest = 1.0f - t;
    return {gap.r * rest + thread.r * t, gap.g * rest + thread.g * t, gap.b * rest + thread.b * t,
            gap.a * rest + thread.a * t};
}

float positiveFraction(float coordinate)
{
    const float finite = finiteOrZero(coordinate);
    const float fraction = finite - std::trunc(finite);
    return fraction < 0.0f ? fraction + 1.0f : fraction;
}

// The part of a thread in the colour of a point: `across` of `width` on the way over the thread, `along` of
// 1 on the way under its neighbours.
float threadPart(float across, float width, float along)
{
    const float halfWidth = width * 0.5f;
    const float e = std::fabs(halfWidth - across) / halfWidth;
    return std::sqrt(1.0f - e * e) * sineOf(along * kHalfTurn);
}

// The point of a unit of the weave, with the room that U and V have of half a unit.
struct LegacyField {
    enum Thread { kNone, kU, kV } thread;
    float part;
};

bool isWithin(float coordinate, float width)
{
    return coordinate > 0.5f && coordinate < width + 0.5f;
}

LegacyField fieldAt(float x, float y, float a, float b)
{
    const auto vThread = [&](float across, float along) {
        return LegacyField{LegacyField::kV, threadPart(across, b, (along - a) / (1.0f - a))};
    };
    const auto uThread = [&](float across, float along) {
        return LegacyField{LegacyField::kU, threadPart(across, a, (along - b) / (1.0f - b))};
    };
    if (x >= 0.5f) {
        if (isWithin(y, b)) return vThread(y - 0.5f, x);
        if (isWithin(x, a)) return uThread(x - 0.5f, y < 0.5f ? y + 0.5f : y - 0.5f);
        if (y < b) return vThread(y, x - 0.5f);
    } else {
        if (y < b) return vThread(y, x + 0.5f);
        if (x < a) return uThread(x, y);
        if (isWithin(y, b)) return vThread(y - 0.5f, x);
    }
    return {LegacyField::kNone, 0.0f};
}

} // namespace

AColor legacyCloth(const Vector& uvw, const ClothWeave& weave, const ClothColors& colors)
{
    float u = uvw.x;
    float v = uvw.y;
    if (weave.uWave != 0.0f || weave.vWave != 0.0f) {
        const TwoSines sines = sinesOf(u * kLegacyTurn, v * kLegacyTurn);
        if (weave.uWave != 0.0f) u -= weave.uWave * sines.second;
        if (weave.vWave != 0.0f) v += weave.vWave * sines.first;
    }

    const bool isRandom = weave.randomness > kSmallestAmount;
    const bool isBright = weave.brightSpread > kSmallestAmount;
    float towardsGap = 0.0f;
    if (isRandom || isBright) {
        const auto n = static_cast<float>(gradientNoise3(uvw.x, uvw.y, uvw.z));
        if (isRandom) {
            u += weave.randomness * n;
            v += weave.randomness * n;
        }
        towardsGap = (n + 1.0f) * 0.5f * weave.brightSpread;
    }

    float uWidth = weave.uWidth;
    float vWidth = weave.vWidth;
    if (weave.widthSpread > kSmallestAmount) {
        const auto n = static_cast<float>(gradientNoise2(uvw.x * kSpreadScale, uvw.y * kSpreadScale));
        const float ofU = (n + 1.0f) * 0.5f * weave.widthSpread;
        uWidth -= ofU;
        vWidth -= weave.widthSpread - ofU;
    }

    const LegacyField field = fieldAt(positiveFraction(u), positiveFraction(v), uWidth * 0.5f, vWidth * 0.5f);
    if (field.thread == LegacyField::kNone) return colors.gap;
    AColor thread = field.thread == LegacyField::kU ? colors.u : colors.v;
    if (isBright) thread = blend(thread, colors.gap, towardsGap);
    return blend(colors.gap, thread, field.part);
}

} // namespace nezaiva
