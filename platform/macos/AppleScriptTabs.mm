#include "platform/macos/AppleScriptTabs.h"

#import <Foundation/Foundation.h>

#include "foundation/Text.h"

namespace quillmere {

namespace {

TabScriptResult::Error errorOf(NSDictionary<NSString*, id>* _Nonnull told) {
  TabScriptResult::Error error;
  const id message = told[NSAppleScriptErrorMessage];
  if ([message isKindOfClass:[NSString class]]) error.message = macos::utf8(message);
  error.description = macos::utf8(told.description).value_or("");
  const id number = told[NSAppleScriptErrorNumber];
  if ([number isKindOfClass:[NSNumber class]]) error.number = static_cast<NSNumber*>(number).longLongValue;
  return error;
}

class AppleScript final : public TabScript {
 public:
  explicit AppleScript(NSAppleScript* _Nonnull script) : script_(script) {}

  TabScriptResult execute() override {
    @autoreleasepool {
      NSDictionary<NSString*, id>* told = nil;
      NSAppleEventDescriptor* const answer = [script_ executeAndReturnError:&told];
      TabScriptResult result;
      if (told != nil) {
        result.error = errorOf(told);
      } else {
        result.text = macos::utf8(answer.stringValue);
      }
      return result;
    }
  }

 private:
  NSAppleScript* _Nonnull script_;
};

}  // namespace

std::unique_ptr<TabScript> AppleScriptTabs::compile(const TabRequest& /*request*/, std::string_view source) {
  @autoreleasepool {
    NSAppleScript* const script = [[NSAppleScript alloc] initWithSource:macos::nsString(source)];
    if (script == nil) return nullptr;
    return std::make_unique<AppleScript>(script);
  }
}

}  // namespace quillmere
