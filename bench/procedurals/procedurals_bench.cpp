// Nanoseconds a sample of the procedural textures' kernels, next to their plain twins in the same run, over
// a picture of 1024 x 1024 points and as many random ones. The ratio of plain to avx2 is the gain.

#include "bench_support.h"

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    bench::registerCloth();
    bench::registerLeather();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
