// The program works while nobody sees it.
#pragma once

#include <memory>

namespace quillmere {

/// For as long as it lives the system doesn't slow the program down because none of its windows shows ("App Nap"): a
/// call that begins is heard then too, and a timer's second stays one. The machine and its display sleep as ever.
/// [main]
class MacActivity {
 public:
  MacActivity();
  ~MacActivity();
  MacActivity(const MacActivity&) = delete;
  MacActivity& operator=(const MacActivity&) = delete;

 private:
  struct Held;
  std::unique_ptr<Held> held_;
};

}  // namespace quillmere
