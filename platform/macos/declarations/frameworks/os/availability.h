// Stands for <os/availability.h>: since when something is there.
#pragma once

#define QUILLMERE_SINCE_macos(version) macos, introduced = version
#define API_AVAILABLE(system) __attribute__((availability(QUILLMERE_SINCE_##system)))
