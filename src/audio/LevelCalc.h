#pragma once

/// The loudness of a block of sound.
class LevelCalc {
public:
    /// @param samples  16-bit samples of one channel
    /// @param count    how many; zero or less is silence
    /// @return 0 to 100
    static int GetSoundLevel(const short *samples, int count);
};
