// The application object that fonts, pictures and windows need, without a display.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <memory>

#ifdef QUILLMERE_TEXTS
#include "views/Translation.h"
#endif

namespace {

class Application : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    application_ = std::make_unique<QGuiApplication>(count_, arguments_);
#ifdef QUILLMERE_TEXTS
    quillmere::installTranslation({});
#endif
  }
  void TearDown() override { application_.reset(); }

 private:
  int count_ = 1;
  char name_[12] = "views_tests";
  char* arguments_[2] = {name_, nullptr};
  std::unique_ptr<QGuiApplication> application_;
};

[[maybe_unused]] const auto* const application = testing::AddGlobalTestEnvironment(new Application);

}  // namespace
