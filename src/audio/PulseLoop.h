#pragma once

struct pa_mainloop_api;

/// The event loop of Qt in the form in which libpulse wants one: whatever is made with it on a
/// thread of Qt's runs on that thread, as its other events do, and needs no lock.
pa_mainloop_api *pulseLoop();
