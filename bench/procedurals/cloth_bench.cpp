#include "bench_support.h"

#include "kernels/procedurals/cloth.h"
#include "support/plain_cloth.h"

namespace {

using nezaiva::ClothColors;
using nezaiva::ClothWeave;
using OUtils::AColor;
using OUtils::Vector;

AColor colorOf(const plain::Channels& c)
{
    return {c[0], c[1], c[2], c[3]};
}

plain::Channels channelsOf(const AColor& c)
{
    return {c.r, c.g, c.b, c.a};
}

plain::ClothColors plainColors(const ClothColors& colors)
{
    return {channelsOf(colors.gap), channelsOf(colors.u), channelsOf(colors.v)};
}

plain::ClothNumbers plainNumbers(const ClothWeave& w)
{
    return {w.uWidth, w.vWidth, w.uWave, w.vWave, w.randomness, w.widthSpread, w.brightSpread};
}

void compareAccurate(const std::string& name, const ClothWeave& weave)
{
    const ClothColors colors;
    const float* table = plain::currentTable().data();
    bench::compare(
        name, [=](const Vector& p) { return nezaiva::accurateCloth(p.x, p.y, weave, colors); },
        [=, numbers = plainNumbers(weave), twinColors = plainColors(colors)](const Vector& p) {
            return colorOf(plain::accurateCloth(table, p.x, p.y, numbers, twinColors));
        });
}

void compareLegacy(const std::string& name, const ClothWeave& weave)
{
    const ClothColors colors;
    const plain::GradientTables& tables = plain::clothGradientTables();
    bench::compare(
        name, [=](const Vector& p) { return nezaiva::legacyCloth(p, weave, colors); },
        [=, &tables, numbers = plainNumbers(weave), twinColors = plainColors(colors)](const Vector& p) {
            return colorOf(plain::legacyCloth(tables, p.x, p.y, p.z, numbers, twinColors));
        });
}

} // namespace

void bench::registerCloth()
{
    ClothWeave everything;
    everything.uWave = 0.1f;
    everything.vWave = 0.2f;
    everything.randomness = 0.5f;
    everything.widthSpread = 0.3f;
    everything.brightSpread = 0.6f;
    compareAccurate("cloth/accurate/defaults", {});
    compareAccurate("cloth/accurate/everything", everything);
    compareLegacy("cloth/legacy/defaults", {});
    compareLegacy("cloth/legacy/everything", everything);
}
