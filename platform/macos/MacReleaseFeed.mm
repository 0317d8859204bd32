// One session a question: it holds its delegate until it is told that it is not needed any more.
#include "platform/macos/MacReleaseFeed.h"

#import <Foundation/Foundation.h>

#include <utility>
#include <vector>

#include "foundation/Text.h"

namespace {

constexpr NSInteger found = 200;

bool isSafe(NSURL* address) { return [address.scheme isEqualToString:@"https"]; }

}  // namespace

/// Its methods are called on the main queue.
@interface QuillmereFeedDelegate : NSObject <NSURLSessionDataDelegate>
@property(nonatomic) NSUInteger maxBytes;
@property(nonatomic) NSMutableData* taken;
@property(nonatomic) BOOL isTooLong;
@property(nonatomic, copy) void (^answered)(NSData* data, NSString* problem);
@end

@implementation QuillmereFeedDelegate
- (void)URLSession:(NSURLSession*)session
                          task:(NSURLSessionTask*)task
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
             completionHandler:(void (^)(NSURLRequest*))completionHandler {
  // Nothing that could be read or changed on the way, whatever an answer points to.
  completionHandler(isSafe(request.URL) ? request : nil);
}

- (void)URLSession:(NSURLSession*)session dataTask:(NSURLSessionDataTask*)dataTask didReceiveData:(NSData*)data {
  if (self.taken.length + data.length > self.maxBytes) {
    self.isTooLong = YES;
    [dataTask cancel];
    return;
  }
  [self.taken appendData:data];
}

- (void)URLSession:(NSURLSession*)session task:(NSURLSessionTask*)task didCompleteWithError:(NSError*)error {
  [session finishTasksAndInvalidate];
  if (self.answered == nil) return;
  NSInteger status = found;
  if ([task.response isKindOfClass:NSHTTPURLResponse.class]) {
    status = static_cast<NSHTTPURLResponse*>(task.response).statusCode;
  }
  if (self.isTooLong) {
    self.answered(nil, @"it is too long");
  } else if (error != nil) {
    self.answered(nil, error.localizedDescription);
  } else if (status != found) {
    self.answered(nil, [NSString stringWithFormat:@"the server answers with %ld", static_cast<long>(status)]);
  } else {
    self.answered(self.taken, nil);
  }
}
@end

namespace quillmere {

struct MacReleaseFeed::Fetch {
  NSURLSession* session = nil;
  std::vector<Reply> waiting;

  void answer(const Answer& answer) {
    session = nil;
    for (const auto& reply : std::exchange(waiting, {})) reply(answer);
  }
};

MacReleaseFeed::MacReleaseFeed(MacReleaseFeedOptions options)
    : options_(std::move(options)), fetch_(std::make_shared<Fetch>()) {}

MacReleaseFeed::~MacReleaseFeed() { [fetch_->session invalidateAndCancel]; }

void MacReleaseFeed::fetch(Reply reply) {
  fetch_->waiting.push_back(std::move(reply));
  if (fetch_->session != nil) return;
  const std::weak_ptr<Fetch> kept = fetch_;
  NSURL* address = [NSURL URLWithString:macos::nsString(options_.address)];
  if (!isSafe(address)) {
    dispatch_async(dispatch_get_main_queue(), ^{
      if (const auto asked = kept.lock()) asked->answer({std::nullopt, "its address is not a safe one"});
    });
    return;
  }
  QuillmereFeedDelegate* delegate = [[QuillmereFeedDelegate alloc] init];
  delegate.maxBytes = options_.maxBytes;
  delegate.taken = [NSMutableData data];
  delegate.answered = ^(NSData* data, NSString* problem) {
    const auto asked = kept.lock();
    if (!asked) return;
    Answer answer;
    if (data != nil) answer.text = std::string(static_cast<const char*>(data.bytes), data.length);
    answer.problem = macos::utf8(problem).value_or("");
    asked->answer(answer);
  };
  NSURLSessionConfiguration* configuration = NSURLSessionConfiguration.ephemeralSessionConfiguration;
  configuration.timeoutIntervalForResource = options_.seconds;
  fetch_->session = [NSURLSession sessionWithConfiguration:configuration
                                                  delegate:delegate
                                             delegateQueue:NSOperationQueue.mainQueue];
  [[fetch_->session dataTaskWithURL:address] resume];
}

}  // namespace quillmere
