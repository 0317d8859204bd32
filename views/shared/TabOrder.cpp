// The order of the Tab key.
#include "views/shared/TabOrder.h"

namespace quillmere {

void TabOrder::follow(const QVariantList& items) {
  QQuickItem* before = nullptr;
  for (const auto& each : items) {
    auto* item = each.value<QQuickItem*>();
    if (!item || (before && item->parentItem() != before->parentItem())) continue;
    if (before) item->stackAfter(before);
    before = item;
  }
}

}  // namespace quillmere
