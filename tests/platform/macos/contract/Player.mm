#include "contract/Player.h"

#include <stdexcept>

#include "platform/macos/foundation/Text.h"

namespace quillmere::test {

Player::Player(const std::string& identifier) : task_([[NSTask alloc] init]), words_([NSPipe pipe]) {
  NSFileManager* const files = NSFileManager.defaultManager;
  folder_ = [NSTemporaryDirectory() stringByAppendingPathComponent:NSProcessInfo.processInfo.globallyUniqueString];
  NSString* const contents = [folder_ stringByAppendingPathComponent:@"Player.app/Contents"];
  NSString* const program = [contents stringByAppendingPathComponent:@"MacOS/player"];
  NSDictionary<NSString*, id>* const info = @{
    @"CFBundleIdentifier" : macos::nsString(identifier),
    @"CFBundleExecutable" : @"player",
    @"CFBundlePackageType" : @"APPL",
    @"LSUIElement" : @YES
  };
  const bool isMade = [files createDirectoryAtPath:[contents stringByAppendingPathComponent:@"MacOS"]
                          withIntermediateDirectories:YES
                                           attributes:nil
                                                error:nil] &&
                      [files copyItemAtPath:@QUILLMERE_TEST_PLAYER toPath:program error:nil] &&
                      [info writeToURL:[NSURL fileURLWithPath:[contents stringByAppendingPathComponent:@"Info.plist"]]
                                 error:nil];
  if (!isMade) throw std::runtime_error("no bundle for the player");
  task_.executableURL = [NSURL fileURLWithPath:program];
  task_.standardInput = words_;
  if (![task_ launchAndReturnError:nil]) throw std::runtime_error("the player doesn't start");
}

Player::~Player() {
  // It ends with its input.
  [words_.fileHandleForWriting closeAndReturnError:nil];
  [task_ waitUntilExit];
  [NSFileManager.defaultManager removeItemAtPath:folder_ error:nil];
}

void Player::say(const std::string& word) {
  const std::string line = word + '\n';
  [words_.fileHandleForWriting writeData:[NSData dataWithBytes:line.data() length:line.size()] error:nil];
}

}  // namespace quillmere::test
