// The state of a program that has started and lists three applications, for what is made after it.
#pragma once

#include "StateFixture.h"

namespace quillmere {

class StartedState : public StateFixture {
 protected:
  StartedState() { startWithThree(); }
};

}  // namespace quillmere
