// Building the tree from the JSON library's events.
#include "detail/JsonTree.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <utility>

namespace quillmere::detail {

namespace {

constexpr std::size_t deepestNesting = 512;
constexpr double largestExactWhole = 9007199254740992.0;

class TreeBuilder final : public nlohmann::json_sax<nlohmann::json> {
 public:
  JsonTree root;
  std::string problem;

  bool null() override {
    place(Kind::null);
    return true;
  }
  bool boolean(bool value) override {
    place(Kind::boolean).boolean = value;
    return true;
  }
  bool number_integer(number_integer_t value) override { return number(std::to_string(value), value); }
  bool number_unsigned(number_unsigned_t value) override {
    std::optional<std::int64_t> whole;
    if (std::in_range<std::int64_t>(value)) whole = static_cast<std::int64_t>(value);
    return number(std::to_string(value), whole);
  }
  bool number_float(number_float_t value, const string_t& digits) override {
    std::optional<std::int64_t> whole;
    if (std::abs(value) <= largestExactWhole && std::trunc(value) == value) whole = static_cast<std::int64_t>(value);
    return number(digits, whole);
  }
  bool string(string_t& value) override {
    place(Kind::text).text = std::move(value);
    return true;
  }
  bool binary(binary_t& /*value*/) override { return false; }

  bool start_object(std::size_t /*elements*/) override { return open(Kind::object); }
  bool key(string_t& name) override {
    key_ = std::move(name);
    return true;
  }
  bool end_object() override { return close(); }
  bool start_array(std::size_t /*elements*/) override { return open(Kind::list); }
  bool end_array() override { return close(); }

  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const nlohmann::json::exception& /*error*/) override {
    problem = "not JSON at byte " + std::to_string(position);
    return false;
  }

 private:
  using Kind = JsonTree::Kind;

  /// Makes a value where the next one belongs: in the innermost open container, or at the root.
  JsonTree& place(Kind kind) {
    auto* made = &root;
    if (!open_.empty()) {
      auto& container = *open_.back();
      if (container.kind == Kind::object) container.keys.push_back(std::move(key_));
      made = &container.items.emplace_back();
    }
    made->kind = kind;
    return *made;
  }
  bool number(std::string digits, std::optional<std::int64_t> whole) {
    auto& made = place(Kind::number);
    made.text = std::move(digits);
    made.whole = whole;
    return true;
  }
  bool open(Kind kind) {
    if (open_.size() >= deepestNesting) {
      problem = "nested too deeply";
      return false;
    }
    // A container grows only while it is the innermost one, so the pointers to the outer ones stay good.
    open_.push_back(&place(kind));
    return true;
  }
  bool close() {
    open_.pop_back();
    return true;
  }

  std::vector<JsonTree*> open_;
  std::string key_;
};

}  // namespace

std::optional<JsonTree> JsonTree::parse(std::string_view text, std::string& problem) {
  // The library takes a NUL for the end of its input and would overlook what follows.
  if (const auto nul = text.find('\0'); nul != std::string_view::npos) {
    problem = "not JSON at byte " + std::to_string(nul + 1);
    return std::nullopt;
  }
  TreeBuilder builder;
  if (!nlohmann::json::sax_parse(text.begin(), text.end(), &builder)) {
    problem = std::move(builder.problem);
    return std::nullopt;
  }
  return std::move(builder.root);
}

const JsonTree* JsonTree::find(std::string_view key) const {
  const auto found = std::find(keys.rbegin(), keys.rend(), key);
  return found == keys.rend() ? nullptr : &items[static_cast<std::size_t>(keys.rend() - found) - 1];
}

const char* JsonTree::nameOf(Kind kind) {
  static constexpr std::array names{"null", "a boolean", "a number", "a text", "a list", "an object"};
  return names.at(static_cast<std::size_t>(kind));
}

}  // namespace quillmere::detail
