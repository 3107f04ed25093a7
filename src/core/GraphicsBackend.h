#pragma once

/// Chooses how Qt Quick draws: with GL where there is a graphics card, else without, because an
/// emulated one takes several times the memory and the processor. QT_QUICK_BACKEND, if set, is
/// left to decide. To be called on the main thread before the first window of Qt Quick is made.
void chooseGraphicsBackend();
