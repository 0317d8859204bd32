// Where the popover stands.
#include "windows/PopoverStage.h"

namespace quillmere {

PopoverStage::~PopoverStage() = default;

}  // namespace quillmere
