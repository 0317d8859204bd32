// Rows keep their identity, and views are told as little as will do.
#include "views/shared/KeyedListModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <algorithm>
#include <random>

namespace quillmere {
namespace {

/// Rows carry a number of their own, so that a row that was made anew can be told from one that has moved.
class Letters final : public KeyedListModel {
 public:
  using Keys = std::vector<std::string>;

  Letters() {
    for (auto signal : {&Letters::rowsInserted, &Letters::rowsRemoved}) {
      connect(this, signal, this, [this] { ++changes; });
    }
    connect(this, &Letters::rowsMoved, this, [this] { ++changes; });
  }
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
    return role == Qt::DisplayRole ? QVariant(numbers[static_cast<std::size_t>(index.row())]) : QVariant();
  }
  void set(const Keys& wanted) {
    changes = 0;
    arrange(wanted);
  }
  [[nodiscard]] int numberOf(const std::string& key) const {
    return numbers[static_cast<std::size_t>(std::ranges::find(keys(), key) - keys().begin())];
  }

  std::vector<int> numbers;
  int changes = 0;

 protected:
  void insertedAt(int row, const std::string&) override { numbers.insert(numbers.begin() + row, ++made_); }
  void removedAt(int row) override { numbers.erase(numbers.begin() + row); }
  void moved(int from, int to) override {
    const int number = numbers[static_cast<std::size_t>(from)];
    numbers.erase(numbers.begin() + from);
    numbers.insert(numbers.begin() + to, number);
  }

 private:
  int made_ = 0;
};

TEST(KeyedListModel, SameOrderTellsNothing) {
  Letters model;
  model.set({"a", "b"});
  model.set({"a", "b"});
  EXPECT_EQ(model.changes, 0);
}

TEST(KeyedListModel, NeighboursComeAndGoTogether) {
  Letters model;
  model.set({"a", "e"});
  model.set({"a", "b", "c", "d", "e"});
  EXPECT_EQ(model.changes, 1);
  model.set({"a", "e"});
  EXPECT_EQ(model.changes, 1);
  model.set({"x", "a", "y", "z", "e"});
  EXPECT_EQ(model.changes, 2);
}

TEST(KeyedListModel, FirstRowThatGoesLastIsOneMove) {
  Letters model;
  model.set({"a", "b", "c", "d"});
  const int number = model.numberOf("a");
  model.set({"b", "c", "d", "a"});
  EXPECT_EQ(model.changes, 1);
  EXPECT_EQ(model.numberOf("a"), number);
}

TEST(KeyedListModel, LastRowThatComesFirstIsOneMove) {
  Letters model;
  model.set({"a", "b", "c", "d"});
  model.set({"d", "a", "b", "c"});
  EXPECT_EQ(model.changes, 1);
  EXPECT_EQ(model.keys(), (Letters::Keys{"d", "a", "b", "c"}));
}

TEST(KeyedListModel, NewRowInTheMiddleIsOneInsertion) {
  Letters model;
  model.set({"a", "c"});
  model.set({"a", "b", "c"});
  EXPECT_EQ(model.changes, 1);
}

TEST(KeyedListModel, RepeatedKeysAreOneRow) {
  Letters model;
  model.set({"a", "b", "a"});
  EXPECT_EQ(model.keys(), (Letters::Keys{"a", "b"}));
}

TEST(KeyedListModel, CountIsToldOnlyWhenItHasChanged) {
  Letters model;
  QSignalSpy spy(&model, &KeyedListModel::countChanged);
  model.set({"a", "b"});
  EXPECT_EQ(spy.count(), 1);
  model.set({"b", "a"});
  EXPECT_EQ(spy.count(), 1);
}

TEST(KeyedListModel, AnySequenceOfOrdersKeepsRowsAndTheRulesOfModels) {
  const auto seed = std::random_device()();
  SCOPED_TRACE(testing::Message() << "seed " << seed);
  std::mt19937 random(seed);
  Letters model;
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  Letters::Keys all;
  for (char letter = 'a'; letter <= 'l'; ++letter) all.emplace_back(1, letter);

  for (int round = 0; round < 2000; ++round) {
    std::map<std::string, int> numberBefore;
    for (const auto& key : model.keys()) numberBefore.emplace(key, model.numberOf(key));
    std::ranges::shuffle(all, random);
    const Letters::Keys wanted(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(random() % (all.size() + 1)));
    model.set(wanted);
    ASSERT_EQ(model.keys(), wanted);
    for (const auto& key : wanted) {
      if (const auto before = numberBefore.find(key); before != numberBefore.end()) {
        ASSERT_EQ(model.numberOf(key), before->second);
      }
    }
  }
}

}  // namespace
}  // namespace quillmere
