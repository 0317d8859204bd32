// The label of [engine], the serial queue that makes and ends what plays: a host knows its thread by it.
#pragma once

namespace quillmere {

inline constexpr const char* engineQueueLabel = "app.quillmere.engine";

}  // namespace quillmere
