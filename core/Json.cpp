// The records' JSON forms, field by field.
#include "core/Json.h"

#include <array>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "detail/JsonTree.h"
#include "detail/NearestNumber.h"

namespace quillmere::json {

namespace {

using detail::JsonTree;
using Kind = JsonTree::Kind;

// Writing. -----------------------------------------------------------------------------------------------------------

/// Collects one JSON text. A number that JSON can't express spoils the whole text.
class Writer {
 public:
  void open(char bracket) {
    separate();
    text_ += bracket;
    first_ = true;
  }
  void close(char bracket) {
    text_ += bracket;
    first_ = false;
  }
  void key(std::string_view name) {
    value(name);
    text_ += ':';
    first_ = true;
  }
  /// Bytes that are not UTF-8 become U+FFFD: a single odd name must not keep all others from being stored.
  void value(std::string_view text) {
    separate();
    text_ += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  }
  void value(bool flag) {
    separate();
    text_ += flag ? "true" : "false";
  }
  void value(std::int64_t number) {
    separate();
    text_ += std::to_string(number);
  }
  /// The shortest text that reads back as the same value of this type.
  template <std::floating_point Number>
  void value(Number number) {
    separate();
    if (!std::isfinite(number)) {
      spoiled_ = true;
      return;
    }
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text_.append(digits.data(), end);
    // "-0" would be read as the integer 0.
    if (number == 0 && std::signbit(number)) text_ += ".0";
  }

  [[nodiscard]] std::optional<std::string> finish() && {
    if (spoiled_) return std::nullopt;
    return std::move(text_);
  }

 private:
  void separate() {
    if (!first_) text_ += ',';
    first_ = false;
  }

  std::string text_;
  bool first_ = true;
  bool spoiled_ = false;
};

void write(Writer& writer, const std::string& text) { writer.value(std::string_view(text)); }

template <typename Elements>
void writeList(Writer& writer, const Elements& elements) {
  writer.open('[');
  for (const auto& element : elements) write(writer, element);
  writer.close(']');
}

template <typename Value>
void writeField(Writer& writer, std::string_view key, const Value& value) {
  writer.key(key);
  writer.value(value);
}

void writeField(Writer& writer, std::string_view key, const std::string& value) {
  writeField(writer, key, std::string_view(value));
}

void writeField(Writer& writer, std::string_view key, const std::optional<std::string>& value) {
  if (value) writeField(writer, key, *value);
}

void write(Writer& writer, const AudioApp& app) {
  writer.open('{');
  writeField(writer, "bundleID", app.bundleID);
  writeField(writer, "name", app.name);
  writeField(writer, "gain", app.gain);
  writeField(writer, "muted", app.muted);
  writeField(writer, "routedDeviceUID", app.routedDeviceUID);
  writer.close('}');
}

void write(Writer& writer, const Profile& profile) {
  writer.open('{');
  writeField(writer, "id", profile.id.text());
  writeField(writer, "name", profile.name);
  writer.key("apps");
  writeList(writer, profile.apps);
  writeField(writer, "focusModeID", profile.focusModeID);
  writeField(writer, "updatedAt", profile.updatedAt.secondsSinceReference);
  writer.close('}');
}

void write(Writer& writer, const DuckRule& rule) {
  writer.open('{');
  writer.key("triggerBundleIDs");
  writeList(writer, rule.triggerBundleIDs);
  writer.key("duckedBundleIDs");
  writeList(writer, rule.duckedBundleIDs);
  writeField(writer, "targetGain", rule.targetGain);
  writeField(writer, "fadeMillis", rule.fadeMillis);
  writeField(writer, "restoreDelayMillis", rule.restoreDelayMillis);
  writer.close('}');
}

template <typename Record>
std::optional<std::string> encodeRecord(const Record& record) {
  Writer writer;
  write(writer, record);
  return std::move(writer).finish();
}

template <typename Element>
std::optional<std::string> encodeList(const std::vector<Element>& elements) {
  Writer writer;
  writeList(writer, elements);
  return std::move(writer).finish();
}

// Reading. -----------------------------------------------------------------------------------------------------------

/// Where in the document a value stands, for messages: a chain from the value outwards.
struct Place {
  const Place* outer = nullptr;
  std::string_view key;
  std::size_t index = 0;

  [[nodiscard]] std::string text() const {
    if (outer == nullptr) return "the value";
    const std::string before = outer->outer == nullptr ? std::string() : outer->text();
    if (key.empty()) return before + "[" + std::to_string(index) + "]";
    return before.empty() ? std::string(key) : before + "." + std::string(key);
  }
};

/// Every read function answers false after the first thing that is wrong, which is then told in `problem`.
class Reader {
 public:
  explicit Reader(std::string& problem) : problem_(problem) {}

  bool read(const JsonTree& tree, const Place& place, std::string& value) {
    if (!isOfKind(tree, place, Kind::text)) return false;
    value = tree.text;
    return true;
  }

  bool read(const JsonTree& tree, const Place& place, bool& value) {
    if (!isOfKind(tree, place, Kind::boolean)) return false;
    value = tree.boolean;
    return true;
  }

  bool read(const JsonTree& tree, const Place& place, std::int64_t& value) {
    if (!isOfKind(tree, place, Kind::number)) return false;
    if (!tree.whole) return fail(place, "is not a whole number of 64 bits");
    value = *tree.whole;
    return true;
  }

  template <std::floating_point Number>
  bool read(const JsonTree& tree, const Place& place, Number& value) {
    if (!isOfKind(tree, place, Kind::number)) return false;
    // Digits too small for this type read as zero, digits too large are no number of it.
    const auto nearest = detail::nearestNumber<Number>(tree.text);
    if (std::isinf(nearest)) return fail(place, "is too large");
    value = nearest;
    return true;
  }

  bool read(const JsonTree& tree, const Place& place, Uuid& value) {
    std::string text;
    if (!read(tree, place, text)) return false;
    const auto id = Uuid::parse(text);
    if (!id) return fail(place, "is not a UUID");
    value = *id;
    return true;
  }

  bool read(const JsonTree& tree, const Place& place, Date& value) {
    return read(tree, place, value.secondsSinceReference);
  }

  template <typename Element>
  bool read(const JsonTree& tree, const Place& place, std::vector<Element>& value) {
    return readElements<Element>(tree, place, [&](Element element) { value.push_back(std::move(element)); });
  }

  /// An element that stands twice is in the set once.
  bool read(const JsonTree& tree, const Place& place, std::set<std::string>& value) {
    return readElements<std::string>(tree, place, [&](std::string element) { value.insert(std::move(element)); });
  }

  bool read(const JsonTree& tree, const Place& place, AudioApp& app) {
    return isOfKind(tree, place, Kind::object) && field(tree, place, "bundleID", app.bundleID) &&
           field(tree, place, "name", app.name) && field(tree, place, "gain", app.gain) &&
           field(tree, place, "muted", app.muted) && field(tree, place, "routedDeviceUID", app.routedDeviceUID);
  }

  bool read(const JsonTree& tree, const Place& place, Profile& profile) {
    return isOfKind(tree, place, Kind::object) && field(tree, place, "id", profile.id) &&
           field(tree, place, "name", profile.name) && field(tree, place, "apps", profile.apps) &&
           field(tree, place, "focusModeID", profile.focusModeID) && field(tree, place, "updatedAt", profile.updatedAt);
  }

  bool read(const JsonTree& tree, const Place& place, DuckRule& rule) {
    return isOfKind(tree, place, Kind::object) && field(tree, place, "triggerBundleIDs", rule.triggerBundleIDs) &&
           field(tree, place, "duckedBundleIDs", rule.duckedBundleIDs) &&
           field(tree, place, "targetGain", rule.targetGain) && field(tree, place, "fadeMillis", rule.fadeMillis) &&
           field(tree, place, "restoreDelayMillis", rule.restoreDelayMillis);
  }

 private:
  bool fail(const Place& place, const std::string& what) {
    problem_ = place.text() + " " + what;
    return false;
  }

  bool isOfKind(const JsonTree& tree, const Place& place, Kind wanted) {
    if (tree.kind == wanted) return true;
    return fail(place, std::string("is ") + JsonTree::nameOf(tree.kind) + ", not " + JsonTree::nameOf(wanted));
  }

  template <typename Element, typename Add>
  bool readElements(const JsonTree& tree, const Place& place, Add add) {
    if (!isOfKind(tree, place, Kind::list)) return false;
    Place inner{&place, {}, 0};
    for (const auto& item : tree.items) {
      Element element{};
      if (!read(item, inner, element)) return false;
      add(std::move(element));
      ++inner.index;
    }
    return true;
  }

  template <typename Value>
  bool field(const JsonTree& object, const Place& place, std::string_view key, Value& value) {
    const Place inner{&place, key, 0};
    const auto* const found = object.find(key);
    return found != nullptr ? read(*found, inner, value) : fail(inner, "is missing");
  }

  bool field(const JsonTree& object, const Place& place, std::string_view key, std::optional<std::string>& value) {
    const auto* const found = object.find(key);
    if (found == nullptr || found->kind == Kind::null) return true;
    std::string text;
    if (!read(*found, Place{&place, key, 0}, text)) return false;
    value = std::move(text);
    return true;
  }

  std::string& problem_;
};

template <typename Value>
std::optional<Value> decode(std::string_view text, std::string* problem) {
  std::string unwanted;
  auto& told = problem != nullptr ? *problem : unwanted;
  const auto tree = JsonTree::parse(text, told);
  if (!tree) return std::nullopt;
  Value value{};
  if (!Reader(told).read(*tree, Place{}, value)) return std::nullopt;
  return value;
}

}  // namespace

std::optional<std::string> encode(const AudioApp& app) { return encodeRecord(app); }
std::optional<std::string> encode(const Profile& profile) { return encodeRecord(profile); }
std::optional<std::string> encode(const DuckRule& rule) { return encodeRecord(rule); }
std::optional<std::string> encode(const std::vector<AudioApp>& apps) { return encodeList(apps); }
std::optional<std::string> encode(const std::vector<Profile>& profiles) { return encodeList(profiles); }
std::optional<std::string> encode(const std::vector<std::string>& texts) { return encodeList(texts); }

std::optional<AudioApp> decodeAudioApp(std::string_view text, std::string* problem) {
  return decode<AudioApp>(text, problem);
}
std::optional<Profile> decodeProfile(std::string_view text, std::string* problem) {
  return decode<Profile>(text, problem);
}
std::optional<DuckRule> decodeDuckRule(std::string_view text, std::string* problem) {
  return decode<DuckRule>(text, problem);
}
std::optional<std::vector<AudioApp>> decodeAudioApps(std::string_view text, std::string* problem) {
  return decode<std::vector<AudioApp>>(text, problem);
}
std::optional<std::vector<Profile>> decodeProfiles(std::string_view text, std::string* problem) {
  return decode<std::vector<Profile>>(text, problem);
}
std::optional<std::vector<std::string>> decodeTexts(std::string_view text, std::string* problem) {
  return decode<std::vector<std::string>>(text, problem);
}

}  // namespace quillmere::json
