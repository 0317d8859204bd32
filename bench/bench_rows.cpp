// What the list of applications costs as it grows: the rows behind a page filled, merged with one change, and all gone
// and come again. A thousand must cost four times what a quarter of them does, not sixteen times.
#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "state/MixerState.h"
#include "state/ViewSettings.h"
#include "views/mixer/AppRowModel.h"

namespace {

using namespace quillmere;

constexpr int wholeCount = 1000;
constexpr int quarterCount = wholeCount / 4;
constexpr int roundCount = 41;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"
/// A mixer that lists what it is told to, and does nothing.
class ListingState final : public MixerState {
 public:
#define OPERATION(name, parameters, arguments) \
  void name parameters override {}
#include "state/MixerOperations.def"

  void list(std::vector<AudioApp> apps) { apps_.set(std::move(apps)); }
};
#pragma GCC diagnostic pop

std::vector<AudioApp> applications(int count) {
  std::vector<AudioApp> apps;
  for (int number = 0; number < count; ++number) {
    const auto text = std::to_string(number);
    apps.push_back({"org.example.application" + text, "Application " + text, 1.0F, false, std::nullopt});
  }
  return apps;
}

/// The model of a page over `count` applications.
struct Rows {
  explicit Rows(int count) : apps(applications(count)) {
    state->list(apps);
    model = std::make_unique<AppRowModel>(state, settings, AppRowModel::Filter::all);
  }

  std::vector<AudioApp> apps;
  std::shared_ptr<ListingState> state = std::make_shared<ListingState>();
  ViewSettings settings{*state};
  std::unique_ptr<AppRowModel> model;
};

double microseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Microseconds, the median of the rounds; `round` measures one.
void report(const char* name, const std::function<double(int count)>& round) {
  std::vector<double> whole;
  std::vector<double> quarters;
  for (int each = 0; each < roundCount; ++each) {
    whole.push_back(round(wholeCount));
    quarters.push_back(4 * round(quarterCount));
  }
  std::printf(
      R"({"name": "rows, %s %d", "value": %.1f, "unit": "us", "peer": "4 times %d", "peerValue": %.1f, "target": "ratio <= 2"})"
      "\n",
      name, wholeCount, median(whole), quarterCount, median(quarters));
}

double fill(int count) {
  return microseconds([count] { const Rows rows(count); });
}

double mergeOneChange(int count) {
  Rows rows(count);
  rows.apps[static_cast<std::size_t>(count / 2)].gain = 0.5F;
  return microseconds([&rows] { rows.state->list(rows.apps); });
}

double leaveAndCome(int count) {
  Rows rows(count);
  return microseconds([&rows] {
    rows.state->list({});
    rows.state->list(rows.apps);
  });
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  report("fill", fill);
  report("a change in one of", mergeOneChange);
  report("leave and come again, all", leaveAndCome);
  return 0;
}
