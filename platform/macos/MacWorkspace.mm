// Running applications, bundles and addresses.
#include "platform/macos/MacWorkspace.h"

#import <AppKit/AppKit.h>

#include <cstddef>
#include <utility>

#include "foundation/Text.h"

/// Hears of every change of a list that it observes.
@interface QuillmereListObserver : NSObject
@property(nonatomic, copy) void (^changed)(void);
@end

@implementation QuillmereListObserver
- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
  // Whoever is called may take this observer away.
  void (^const told)(void) = self.changed;
  if (told != nil) told();
}
@end

namespace quillmere {

namespace {

constexpr CGFloat iconSide = 256;

/// The first two that are texts: what people call it, and what it calls itself.
std::optional<std::string> nameOf(NSBundle* bundle) {
  for (NSString* key in @[ @"CFBundleDisplayName", @"CFBundleName" ]) {
    NSObject* value = [bundle objectForInfoDictionaryKey:key];
    if ([value isKindOfClass:NSString.class]) return macos::utf8(static_cast<NSString*>(value));
  }
  return std::nullopt;
}

std::optional<InstalledApplication> describe(NSBundle* bundle) {
  auto bundleID = macos::utf8(bundle.bundleIdentifier);
  if (!bundleID) return std::nullopt;
  return InstalledApplication{std::move(*bundleID), nameOf(bundle), macos::utf8(bundle.bundleURL.path).value_or("")};
}

NSArray<NSURL*>* applicationFolders() {
  NSMutableArray<NSURL*>* folders = [NSMutableArray array];
  [folders addObject:[NSURL fileURLWithPath:@"/Applications"]];
  NSURL* own =
      [NSFileManager.defaultManager URLsForDirectory:NSApplicationDirectory inDomains:NSUserDomainMask].firstObject;
  if (own != nil) [folders addObject:own];
  [folders addObject:[NSURL URLWithString:@"file:///Applications/Utilities"]];
  return folders;
}

NSRunningApplication* firstRunning(NSString* bundleID) {
  for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
    if ([application.bundleIdentifier isEqualToString:bundleID]) return application;
  }
  return nil;
}

std::optional<IconReference> encoded(NSImage* image) {
  NSRect place = NSMakeRect(0, 0, iconSide, iconSide);
  CGImageRef picture = [image CGImageForProposedRect:&place context:nil hints:nil];
  if (picture == nullptr) return std::nullopt;
  NSBitmapImageRep* bitmap = [[NSBitmapImageRep alloc] initWithCGImage:picture];
  NSData* png = [bitmap representationUsingType:NSBitmapImageFileTypePNG properties:@{}];
  if (png == nil) return std::nullopt;
  const auto* bytes = static_cast<const std::byte*>(png.bytes);
  return EncodedIcon{std::vector<std::byte>(bytes, bytes + png.length)};
}

}  // namespace

/// Of the list itself: the workspace's notifications tell of no program that has no place in the Dock.
struct MacWorkspace::Watch {
  explicit Watch(std::function<void()> callback) {
    observer.changed = ^{
      callback();
    };
    [NSWorkspace.sharedWorkspace addObserver:observer forKeyPath:list options:0 context:nil];
  }
  ~Watch() {
    observer.changed = nil;
    [NSWorkspace.sharedWorkspace removeObserver:observer forKeyPath:list];
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  NSString* list = NSStringFromSelector(@selector(runningApplications));
  QuillmereListObserver* observer = [[QuillmereListObserver alloc] init];
};

MacWorkspace::MacWorkspace() = default;

MacWorkspace::~MacWorkspace() = default;

std::vector<RunningApplication> MacWorkspace::runningApplications() {
  @autoreleasepool {
    std::vector<RunningApplication> found;
    for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
      found.push_back({macos::utf8(application.bundleIdentifier), macos::utf8(application.localizedName),
                       application.processIdentifier,
                       application.activationPolicy == NSApplicationActivationPolicyProhibited});
    }
    return found;
  }
}

std::optional<IconReference> MacWorkspace::icon(const std::string& bundleID) {
  @autoreleasepool {
    NSString* identifier = macos::nsString(bundleID);
    if (NSRunningApplication* running = firstRunning(identifier); running.icon != nil) return encoded(running.icon);
    NSURL* url = [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:identifier];
    if (url == nil) return std::nullopt;
    return encoded([NSWorkspace.sharedWorkspace iconForFile:url.path]);
  }
}

std::vector<InstalledApplication> MacWorkspace::installedApplications() {
  @autoreleasepool {
    std::vector<InstalledApplication> found;
    for (NSURL* folder in applicationFolders()) {
      NSArray<NSURL*>* entries =
          [NSFileManager.defaultManager contentsOfDirectoryAtURL:folder
                                      includingPropertiesForKeys:nil
                                                         options:NSDirectoryEnumerationSkipsHiddenFiles
                                                           error:nil];
      for (NSURL* entry in entries) {
        if (![entry.pathExtension isEqualToString:@"app"]) continue;
        NSBundle* bundle = [NSBundle bundleWithURL:entry];
        if (bundle == nil) continue;
        if (auto application = describe(bundle)) found.push_back(std::move(*application));
      }
    }
    return found;
  }
}

std::optional<InstalledApplication> MacWorkspace::installedApplication(const std::string& bundleID) {
  @autoreleasepool {
    NSURL* url = [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:macos::nsString(bundleID)];
    NSBundle* bundle = url != nil ? [NSBundle bundleWithURL:url] : nil;
    return bundle != nil ? describe(bundle) : std::nullopt;
  }
}

std::optional<InstalledApplication> MacWorkspace::applicationAt(const std::string& path) {
  @autoreleasepool {
    NSBundle* bundle = [NSBundle bundleWithURL:[NSURL fileURLWithPath:macos::nsString(path)]];
    return bundle != nil ? describe(bundle) : std::nullopt;
  }
}

void MacWorkspace::onApplicationsChanged(std::function<void()> callback) {
  watch_.reset();
  if (callback) watch_ = std::make_unique<Watch>(std::move(callback));
}

bool MacWorkspace::openURL(const std::string& url) {
  @autoreleasepool {
    NSURL* address = [NSURL URLWithString:macos::nsString(url)];
    return address != nil && [NSWorkspace.sharedWorkspace openURL:address];
  }
}

}  // namespace quillmere
