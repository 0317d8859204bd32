// From a tab's id to a script.
#include "integrations/BrowserTabActivator.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "core/DecimalInteger.h"
#include "scripting/ScriptError.h"

namespace quillmere {

namespace {

constexpr std::string_view safari = "com.apple.Safari";

struct Chromium {
  std::string_view bundleID;
  std::string_view name;
};

/// The first one stands for whatever isn't listed.
constexpr std::array<Chromium, 4> chromiums{{{"com.google.Chrome", "Google Chrome"},
                                             {"com.brave.Browser", "Brave Browser"},
                                             {"company.thebrowser.Browser", "Arc"},
                                             {"com.microsoft.edgemac", "Microsoft Edge"}}};

const Chromium& chromiumFor(std::string_view bundleID) {
  const auto* found = std::ranges::find(chromiums, bundleID, &Chromium::bundleID);
  return found == chromiums.end() ? chromiums.front() : *found;
}

/// The pieces between colons, without the empty ones.
std::vector<std::string_view> piecesOf(std::string_view id) {
  std::vector<std::string_view> pieces;
  while (!id.empty()) {
    const auto piece = id.substr(0, id.find(':'));
    if (!piece.empty()) pieces.push_back(piece);
    id.remove_prefix(std::min(piece.size() + 1, id.size()));
  }
  return pieces;
}

/// The number behind the first character of a piece; 1 where there is none.
std::int64_t numberIn(std::string_view piece) {
  std::size_t first = std::min<std::size_t>(1, piece.size());
  while (first < piece.size() && (static_cast<unsigned char>(piece[first]) & 0xC0U) == 0x80U) ++first;
  return decimalInteger(piece.substr(first)).value_or(1);
}

std::string activationScript(std::string_view name, std::int64_t window, const std::string& selection) {
  const auto number = std::to_string(window);
  // The number stands in both lines, though the first one may give the window another.
  return "tell application \"" + std::string(name) + "\"\n" +
         "    activate\n"
         "    try\n"
         "        set index of window " +
         number +
         " to 1\n"
         "        tell window " +
         number + " to " + selection +
         "\n"
         "    end try\n"
         "end tell";
}

}  // namespace

BrowserTabActivator::BrowserTabActivator(TabScripting& scripting, const Runtime& runtime)
    : scripting_(scripting),
      log_(runtime.log, "BrowserTabActivator"),
      background_(std::make_shared<OrderedBackground>(runtime.background)) {}

void BrowserTabActivator::activate(const std::string& bundleID, const BrowserTab& tab) const {
  const auto pieces = piecesOf(tab.id);
  TabRequest request{TabRequest::Kind::activate, bundleID};
  request.window = pieces.size() < 2 ? 1 : numberIn(pieces[1]);
  request.tab = pieces.empty() ? 1 : numberIn(pieces.back());

  std::string source;
  if (bundleID == safari) {
    source = activationScript("Safari", request.window, "set current tab to tab " + std::to_string(request.tab));
  } else {
    const auto& browser = chromiumFor(bundleID);
    // What the script speaks to.
    request.bundleID = browser.bundleID;
    source = activationScript(browser.name, request.window, "set active tab index to " + std::to_string(request.tab));
  }

  background_->post([&scripting = scripting_, log = log_, bundleID, request, source = std::move(source)] {
    const auto script = scripting.compile(request, source);
    if (!script) return;
    const auto result = script->execute();
    if (result.error) log.standard("activate tab failed for " + bundleID + ": " + messageOf(*result.error));
  });
}

}  // namespace quillmere
