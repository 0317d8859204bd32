// The contract of the settings port on the user's defaults: those of this test program, which are emptied.
#include "platform/macos/MacUserDefaults.h"

#import <Foundation/Foundation.h>

#include "tests/platform/contract/UserDefaultsContract.h"

namespace quillmere {
namespace {

class MacDefaultsHost {
 public:
  MacDefaultsHost() { empty(); }
  ~MacDefaultsHost() { empty(); }
  MacDefaultsHost(const MacDefaultsHost&) = delete;
  MacDefaultsHost& operator=(const MacDefaultsHost&) = delete;

  UserDefaults& defaults() { return defaults_; }
  /// What is kept in memory is forgotten.
  void restart() { [NSUserDefaults resetStandardUserDefaults]; }

 private:
  static void empty() {
    NSString* const identifier = NSBundle.mainBundle.bundleIdentifier;
    // Of a program without a bundle the domain has the program's name.
    NSString* const domain = identifier != nil ? identifier : NSProcessInfo.processInfo.processName;
    [NSUserDefaults.standardUserDefaults removePersistentDomainForName:domain];
  }

  MacUserDefaults defaults_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, UserDefaultsContract, MacDefaultsHost);

}  // namespace
}  // namespace quillmere
