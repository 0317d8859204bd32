// The database writes to disk by itself; nothing here waits for it.
#include "platform/macos/MacUserDefaults.h"

#import <Foundation/Foundation.h>

#include <type_traits>
#include <variant>

#include "foundation/Text.h"

namespace quillmere {

namespace {

/// A boolean is a number to the language, and another type to the database.
bool isBoolean(NSNumber* _Nonnull number) { return CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID(); }

}  // namespace

std::optional<DefaultsValue> MacUserDefaults::object(std::string_view key) const {
  const id stored = [NSUserDefaults.standardUserDefaults objectForKey:macos::nsString(key)];
  if ([stored isKindOfClass:[NSNumber class]]) {
    NSNumber* const number = stored;
    if (isBoolean(number)) return DefaultsValue(static_cast<bool>(number.boolValue));
    return DefaultsValue(number.doubleValue);
  }
  if ([stored isKindOfClass:[NSString class]]) {
    auto text = macos::utf8(stored);
    if (text) return DefaultsValue(std::move(*text));
  }
  if ([stored isKindOfClass:[NSData class]]) {
    NSData* const data = stored;
    const auto* const bytes = static_cast<const std::byte*>(data.bytes);
    return DefaultsValue(Data(bytes, bytes + data.length));
  }
  return std::nullopt;
}

void MacUserDefaults::set(std::string_view key, DefaultsValue value) {
  NSUserDefaults* const defaults = NSUserDefaults.standardUserDefaults;
  NSString* const name = macos::nsString(key);
  std::visit(
      [&](const auto& typed) {
        using Typed = std::remove_cvref_t<decltype(typed)>;
        if constexpr (std::is_same_v<Typed, bool>) {
          [defaults setBool:typed forKey:name];
        } else if constexpr (std::is_same_v<Typed, double>) {
          [defaults setDouble:typed forKey:name];
        } else if constexpr (std::is_same_v<Typed, std::string>) {
          [defaults setObject:macos::nsString(typed) forKey:name];
        } else {
          [defaults setObject:[NSData dataWithBytes:typed.data() length:typed.size()] forKey:name];
        }
      },
      value);
}

void MacUserDefaults::remove(std::string_view key) {
  [NSUserDefaults.standardUserDefaults removeObjectForKey:macos::nsString(key)];
}

}  // namespace quillmere
