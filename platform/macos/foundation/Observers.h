// Blocks that a notification centre keeps, taken away with this. Only for Objective-C++.
#pragma once

#import <Foundation/Foundation.h>

namespace quillmere::macos {

/// [main]: the blocks run on the main queue, and none of them once this has gone.
class Observers {
 public:
  Observers() = default;
  ~Observers() {
    for (NSUInteger index = 0; index < tokens_.count; ++index) [centres_[index] removeObserver:tokens_[index]];
  }
  Observers(const Observers&) = delete;
  Observers& operator=(const Observers&) = delete;

  void add(NSNotificationCenter* centre, NSNotificationName name, void (^block)(NSNotification* notification)) {
    [tokens_ addObject:[centre addObserverForName:name object:nil queue:NSOperationQueue.mainQueue usingBlock:block]];
    [centres_ addObject:centre];
  }

 private:
  NSMutableArray<id<NSObject>>* tokens_ = [NSMutableArray array];
  NSMutableArray<NSNotificationCenter*>* centres_ = [NSMutableArray array];
};

}  // namespace quillmere::macos
