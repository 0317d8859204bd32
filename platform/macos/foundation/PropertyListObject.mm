#include "foundation/PropertyListObject.h"

#include "foundation/Text.h"

namespace quillmere::macos {

namespace {

struct Made {
  id _Nonnull operator()(bool truth) const { return [NSNumber numberWithBool:truth]; }
  id _Nonnull operator()(const std::string& text) const { return nsString(text); }
  id _Nonnull operator()(const PropertyList::List& items) const {
    NSMutableArray<id>* const made = [NSMutableArray arrayWithCapacity:items.size()];
    for (const auto& item : items) [made addObject:propertyListObject(item)];
    return made;
  }
  id _Nonnull operator()(const PropertyList::Dictionary& entries) const { return propertyListObject(entries); }
};

}  // namespace

id propertyListObject(const PropertyList& list) { return std::visit(Made(), list.value); }

NSDictionary<NSString*, id>* propertyListObject(const PropertyList::Dictionary& entries) {
  NSMutableDictionary<NSString*, id>* const made = [NSMutableDictionary dictionary];
  for (const auto& [key, value] : entries) made[nsString(key)] = propertyListObject(value);
  return made;
}

}  // namespace quillmere::macos
