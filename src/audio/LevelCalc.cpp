#include "audio/LevelCalc.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
/// Shares of the mean magnitude up to this are noise of the sound card.
constexpr double noiseShare = 0.12;
/// More samples at full scale than this are an overdriven microphone.
constexpr int allowedFullScale = 10;
constexpr double log10OfFullScale = 4.515436681141699;
constexpr int maxLevel = 100;
} // namespace

int LevelCalc::GetSoundLevel(const short *samples, int count) {
    if (count <= 0)
        return 0;
    int fullScale = 0;
    double sum = 0;
    for (int i = 0; i < count; ++i) {
        const int sample = samples[i];
        fullScale += sample == std::numeric_limits<short>::max() ? 1 : 0;
        // Widened before the subtraction: the lowest sample has no lower neighbour in 16 bits.
        const double share = std::abs(sample - 1) / static_cast<double>(count);
        if (share > noiseShare)
            sum += share;
    }
    if (fullScale > allowedFullScale)
        return maxLevel;
    const double magnitude = std::log10(sum);
    if (magnitude < 0)
        return 0;
    return std::min(maxLevel, static_cast<int>(magnitude / log10OfFullScale * 100.0));
}
