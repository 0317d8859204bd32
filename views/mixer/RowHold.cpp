// Counts itself in and out.
#include "views/mixer/RowHold.h"

namespace quillmere {

RowHold::~RowHold() {
  if (row_) row_->release();
}

void RowHold::setRow(AppRowPresenter* row) {
  if (row_ == row) return;
  if (row_) row_->release();
  row_ = row;
  if (row_) row_->hold();
  Q_EMIT rowChanged();
}

}  // namespace quillmere
