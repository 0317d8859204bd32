// Texts across the border to Foundation. Only for Objective-C++.
#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <string_view>

namespace quillmere::macos {

/// `text` as the system's string; of bytes that aren't UTF-8, an empty one. [any]
inline NSString* _Nonnull nsString(std::string_view text) {
  NSString* const made = [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
  return made != nil ? made : @"";
}

/// The bytes of `text`, null characters included; absent where there is none. [any]
inline std::optional<std::string> utf8(NSString* _Nullable text) {
  if (text == nil) return std::nullopt;
  const char* bytes = text.UTF8String;
  if (bytes == nullptr) return std::nullopt;
  return std::string(bytes, [text lengthOfBytesUsingEncoding:NSUTF8StringEncoding]);
}

}  // namespace quillmere::macos
