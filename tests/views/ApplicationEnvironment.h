// The application object that fonts, pictures and windows need, without a display.
#pragma once

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <memory>

namespace quillmere {

/// For AddGlobalTestEnvironment, once a program.
class ApplicationEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    application_ = std::make_unique<QGuiApplication>(count_, arguments_);
  }
  void TearDown() override { application_.reset(); }

 private:
  int count_ = 1;
  char name_[12] = "views_tests";
  char* arguments_[2] = {name_, nullptr};
  std::unique_ptr<QGuiApplication> application_;
};

}  // namespace quillmere
