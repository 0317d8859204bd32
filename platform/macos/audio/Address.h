// Where a property stands, in the system's form. Only for Objective-C++.
#pragma once

#import <CoreAudio/CoreAudio.h>

#include "platform/AudioTypes.h"

namespace quillmere::macos {

/// [any]
inline AudioObjectPropertyAddress addressOf(const PropertyAddress& address) {
  return {.mSelector = address.selector, .mScope = address.scope, .mElement = address.element};
}

}  // namespace quillmere::macos
