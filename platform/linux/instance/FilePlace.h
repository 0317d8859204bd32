// The place of the only instance as a locked file in the runtime folder, with a socket beside it for those who come
// later.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "../loop/DescriptorWatch.h"
#include "../loop/HostLoop.h"
#include "Outcome.h"
#include "platform/ActivationRequest.h"

namespace quillmere::instance {

/// [main]
class FilePlace {
 public:
  /// Asks for the place at once: result() says what came of it, and another instance has been asked for what `request`
  /// says. `activated` is called on [host] with what others ask.
  FilePlace(const std::string& folder, const std::optional<ActivationRequest>& request,
            std::function<void(const ActivationRequest&)> activated);
  /// The place is free again.
  ~FilePlace();
  FilePlace(const FilePlace&) = delete;
  FilePlace& operator=(const FilePlace&) = delete;

  [[nodiscard]] Outcome result() const { return result_; }

 private:
  class Descriptor {
   public:
    explicit Descriptor(int value = -1) : value_(value) {}
    ~Descriptor();
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&& other) noexcept;
    [[nodiscard]] int get() const { return value_; }
    explicit operator bool() const { return value_ >= 0; }

   private:
    int value_;
  };

  /// [host]
  void listen() const;

  const std::function<void(const ActivationRequest&)> activated_;
  Outcome result_ = Outcome::unavailable;
  Descriptor lock_;
  Descriptor socket_;
  const std::shared_ptr<HostLoop> loop_;
  /// [host]
  std::optional<DescriptorWatch> watch_;
};

}  // namespace quillmere::instance
