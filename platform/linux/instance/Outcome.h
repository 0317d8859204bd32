// What came of asking for the place of the only instance. [any]
#pragma once

namespace quillmere::instance {

enum class Outcome {
  /// It is this instance's.
  first,
  /// It is another one's, which has been asked for what was to be asked.
  second,
  /// Nothing there can tell instances apart.
  unavailable,
};

}  // namespace quillmere::instance
