#include "bench_support.h"

#include "kernels/procedurals/leather.h"
#include "support/plain_leather.h"

namespace {

using nezaiva::LeatherColors;
using nezaiva::LeatherNumbers;
using OUtils::AColor;
using OUtils::Vector;

constexpr LeatherColors kColors{{0.9f, 0.5f, 0.2f, 1.0f}, {0.1f, 0.05f, 0.0f, 1.0f}};
constexpr plain::Rgb kPlainCell{0.9f, 0.5f, 0.2f};
constexpr plain::Rgb kPlainCrease{0.1f, 0.05f, 0.0f};

plain::LeatherNumbers plainNumbers(const LeatherNumbers& n)
{
    return {n.size, n.density, n.spottyness, n.randomness, n.threshold, n.creases};
}

AColor colorOf(const plain::Rgba& c)
{
    return {c[0], c[1], c[2], c[3]};
}

void compareCurrent(const std::string& name, const LeatherNumbers& numbers)
{
    bench::compare(
        name, [=](const Vector& p) { return nezaiva::currentLeather(p, numbers, kColors); },
        [twin = plainNumbers(numbers)](const Vector& p) {
            return colorOf(plain::currentLeather(p.x, p.y, p.z, twin, kPlainCell, kPlainCrease));
        });
}

void compareLegacy(const std::string& name, const LeatherNumbers& numbers)
{
    bench::compare(
        name, [=](const Vector& p) { return nezaiva::legacyLeather(p, numbers, kColors); },
        [twin = plainNumbers(numbers)](const Vector& p) {
            return colorOf(plain::legacyLeather(p.x, p.y, p.z, twin, kPlainCell, kPlainCrease));
        });
}

} // namespace

void bench::registerLeather()
{
    LeatherNumbers straying;
    straying.randomness = 1.0f;
    compareCurrent("leather/current/defaults", {});
    compareCurrent("leather/current/randomness 1", straying);
    compareLegacy("leather/legacy/defaults", {});
    compareLegacy("leather/legacy/randomness 1", straying);
}
