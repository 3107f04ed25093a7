#pragma once

/// Chooses how Qt draws: with GL where there is a graphics card, else without, because an emulated
/// one takes several times the memory and the processor. QT_QUICK_BACKEND, if set, is left to
/// decide. Main thread, before the application object is made.
class GraphicsBackend {
public:
    GraphicsBackend();

    /// Takes out of the environment what was put there for this program alone. To be called once
    /// the application object is there.
    void leaveEnvironment() const;

private:
    bool m_hasSetIntegration = false;
};
