// A record that has a member more than its form.
#include "wire/Forms.h"

namespace quillmere {

struct Record {
  int named = 0;
  int forgotten = 0;
};

QUILLMERE_RECORD(Record, named)

}  // namespace quillmere
