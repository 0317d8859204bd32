// The application object that windows need, without a display.
#include <gtest/gtest.h>

#include <QApplication>
#include <memory>

namespace {

class Application : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    application_ = std::make_unique<QApplication>(count_, arguments_);
    QApplication::setQuitOnLastWindowClosed(false);
  }
  void TearDown() override { application_.reset(); }

 private:
  int count_ = 1;
  char name_[14] = "windows_tests";
  char* arguments_[2] = {name_, nullptr};
  std::unique_ptr<QApplication> application_;
};

[[maybe_unused]] const auto* const application = testing::AddGlobalTestEnvironment(new Application);

}  // namespace
