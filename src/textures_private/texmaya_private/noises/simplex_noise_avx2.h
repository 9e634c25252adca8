// Simplex noise for processors with AVX2; called through simplex_noise.h only.
#pragma once

namespace nezaiva {

float simplexNoiseAvx2(float x, float y);
void simplexNoiseFourAvx2(const float* x, const float* y, float* noise); // arrays of four, aligned to 16
float simplexCellularAvx2(float x, float y, float frequency);            // without the amplitude

} // namespace nezaiva
