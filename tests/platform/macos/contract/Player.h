// An application with an identifier of its own that plays: a bundle around the test's player. Only for Objective-C++.
#pragma once

#import <Foundation/Foundation.h>

#include <string>

namespace quillmere::test {

class Player {
 public:
  /// Throws where it can't be started.
  explicit Player(const std::string& identifier);
  /// It has ended, and its bundle has gone.
  ~Player();
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;
  /// "pause" or "play".
  void say(const std::string& word);

 private:
  NSString* _Nonnull folder_;
  NSTask* _Nonnull task_;
  NSPipe* _Nonnull words_;
};

}  // namespace quillmere::test
