#include "platform/macos/MediaRemoteNowPlaying.h"

#import <Foundation/Foundation.h>

#include <utility>

#include "foundation/Text.h"

namespace quillmere {

namespace {

using GetInfo = void (*)(dispatch_queue_t _Nonnull queue, void (^_Nonnull reply)(CFDictionaryRef _Nullable info));
using GetPID = void (*)(dispatch_queue_t _Nonnull queue, void (^_Nonnull reply)(int pid));

/// Opened once and never closed; null where it can't be.
CFBundleRef _Nullable framework() {
  static const CFBundleRef bundle = [] {
    NSURL* const url __attribute__((objc_precise_lifetime)) =
        [NSURL fileURLWithPath:@"/System/Library/PrivateFrameworks/MediaRemote.framework" isDirectory:YES];
    return CFBundleCreate(kCFAllocatorDefault, (__bridge CFURLRef)url);
  }();
  return bundle;
}

/// The framework's function of this name; null where there is none.
template <typename Function>
Function _Nullable function(CFStringRef _Nonnull name) {
  const CFBundleRef bundle = framework();
  if (bundle == nullptr) return nullptr;
  return reinterpret_cast<Function>(CFBundleGetFunctionPointerForName(bundle, name));
}

/// Absent for what the port has no type for: pictures, dates.
std::optional<NowPlayingValue> valueOf(id _Nonnull value) {
  if ([value isKindOfClass:[NSString class]]) {
    if (auto text = macos::utf8(value)) return NowPlayingValue(std::move(*text));
  }
  if ([value isKindOfClass:[NSNumber class]]) {
    // A whole rate or position comes as a whole number: whoever asks for a real one means any.
    NSNumber* const number = value;
    return NowPlayingValue(number.doubleValue);
  }
  return std::nullopt;
}

std::optional<NowPlayingInfo> infoOf(NSDictionary* _Nullable dictionary) {
  if (dictionary == nil) return std::nullopt;
  NowPlayingInfo info;
  for (id key in dictionary) {
    if (![key isKindOfClass:[NSString class]]) return std::nullopt;
    auto name = macos::utf8(key);
    if (!name) continue;
    const id found = dictionary[key];
    if (found == nil) continue;
    if (auto value = valueOf(found)) info.emplace(std::move(*name), std::move(*value));
  }
  return info;
}

}  // namespace

void MediaRemoteNowPlaying::nowPlayingInfo(InfoReply reply) {
  @autoreleasepool {
    const auto getInfo = function<GetInfo>(CFSTR("MRMediaRemoteGetNowPlayingInfo"));
    if (getInfo == nullptr) {
      dispatch_async(dispatch_get_main_queue(), ^{
        reply(std::nullopt);
      });
      return;
    }
    // The dictionary stays the framework's.
    getInfo(dispatch_get_main_queue(), ^(CFDictionaryRef _Nullable info) {
      reply(infoOf((__bridge NSDictionary*)info));
    });
  }
}

void MediaRemoteNowPlaying::nowPlayingApplicationPID(PIDReply reply) {
  @autoreleasepool {
    const auto getPID = function<GetPID>(CFSTR("MRMediaRemoteGetNowPlayingApplicationPID"));
    if (getPID == nullptr) {
      dispatch_async(dispatch_get_main_queue(), ^{
        reply(std::nullopt);
      });
      return;
    }
    getPID(dispatch_get_main_queue(), ^(int pid) {
      reply(pid);
    });
  }
}

}  // namespace quillmere
