// The toolkit's dialogue for an application's file.
#include "windows/DialogApplicationChooser.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>
#include <optional>
#include <string>
#include <vector>

namespace quillmere {
namespace {

class FileDialogue : public testing::Test {
 protected:
  using Answers = std::vector<std::optional<std::string>>;

  FileDialogue() {
    QFile file(path());
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  }
  [[nodiscard]] QString path() const { return folder.filePath("an app.desktop"); }
  void ask(Answers& into) {
    chooser.choose({"Browse", "Applications"},
                   [&into](std::optional<std::string> chosen) { into.push_back(std::move(chosen)); });
  }
  static QFileDialog* dialogue() {
    for (auto* widget : QApplication::topLevelWidgets()) {
      auto* found = qobject_cast<QFileDialog*>(widget);
      if (found != nullptr && found->isVisible()) return found;
    }
    return nullptr;
  }

  QTemporaryDir folder;
  DialogApplicationChooser chooser{folder.path()};
  Answers answers;
};

TEST_F(FileDialogue, TellsTheFileThatWasChosen) {
  ask(answers);
  ASSERT_NE(dialogue(), nullptr);
  EXPECT_EQ(dialogue()->windowTitle(), "Browse");
  EXPECT_EQ(dialogue()->nameFilters(), QStringList("Applications (*.desktop)"));
  dialogue()->selectFile(path());
  static_cast<QDialog*>(dialogue())->accept();
  EXPECT_EQ(answers, Answers{path().toStdString()});
}

TEST_F(FileDialogue, TellsThatNothingWasChosenAndOpensAgain) {
  ask(answers);
  dialogue()->reject();
  EXPECT_EQ(answers, Answers{std::nullopt});
  ask(answers);
  ASSERT_NE(dialogue(), nullptr);
  dialogue()->reject();
  EXPECT_EQ(answers.size(), 2U);
}

TEST_F(FileDialogue, ALaterQuestionTakesItOver) {
  Answers earlier;
  ask(earlier);
  auto* const first = dialogue();
  ask(answers);
  EXPECT_EQ(dialogue(), first);
  ASSERT_TRUE(QTest::qWaitFor([&] { return earlier.size() == 1; }));
  EXPECT_EQ(earlier, Answers{std::nullopt});
  EXPECT_TRUE(answers.empty());
  first->reject();
  EXPECT_EQ(answers, Answers{std::nullopt});
  EXPECT_EQ(earlier.size(), 1U);
}

TEST_F(FileDialogue, BelongsToTheWindowThatAsks) {
  QWindow window;
  window.show();
  window.requestActivate();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  ask(answers);
  ASSERT_NE(dialogue(), nullptr);
  EXPECT_EQ(dialogue()->windowHandle()->transientParent(), &window);
  EXPECT_EQ(dialogue()->windowModality(), Qt::WindowModal);
  dialogue()->reject();
}

TEST_F(FileDialogue, GoesWithItsChooserAndTellsNobody) {
  auto another = std::make_unique<DialogApplicationChooser>(folder.path());
  another->choose({"Browse", "Applications"}, [this](std::optional<std::string>) { answers.emplace_back(); });
  ASSERT_NE(dialogue(), nullptr);
  another.reset();
  EXPECT_EQ(dialogue(), nullptr);
  EXPECT_TRUE(answers.empty());
}

}  // namespace
}  // namespace quillmere
