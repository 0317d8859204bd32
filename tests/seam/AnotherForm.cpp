// An implementation that differs from what is described.
#include "state/AppState.h"

void quillmere::AppState::added(int) {}
