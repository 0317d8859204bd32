// Works out the smallest set of row changes between two orders.
#include "views/shared/KeyedListModel.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace quillmere {

namespace {

std::vector<std::string> withoutRepetitions(const std::vector<std::string>& keys) {
  std::vector<std::string> unique;
  unique.reserve(keys.size());
  std::unordered_set<std::string_view> seen;
  for (const auto& key : keys) {
    if (seen.insert(key).second) unique.push_back(key);
  }
  return unique;
}

/// The members of a longest increasing run of `ranks`, not necessarily adjacent: the rows that may stay where they are.
std::set<int> longestIncreasing(const std::vector<int>& ranks) {
  std::vector<std::size_t> tails;
  std::vector<std::ptrdiff_t> previous(ranks.size(), -1);
  for (std::size_t i = 0; i < ranks.size(); ++i) {
    const auto at = std::ranges::lower_bound(tails, ranks[i], {}, [&](std::size_t tail) { return ranks[tail]; });
    if (at != tails.begin()) previous[i] = static_cast<std::ptrdiff_t>(*(at - 1));
    if (at == tails.end()) {
      tails.push_back(i);
    } else {
      *at = i;
    }
  }
  std::set<int> members;
  for (auto i = tails.empty() ? -1 : static_cast<std::ptrdiff_t>(tails.back()); i >= 0;
       i = previous[static_cast<std::size_t>(i)]) {
    members.insert(ranks[static_cast<std::size_t>(i)]);
  }
  return members;
}

}  // namespace

int KeyedListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

void KeyedListModel::arrange(const std::vector<std::string>& wanted) {
  const auto target = withoutRepetitions(wanted);
  if (target == keys_) return;
  const auto countBefore = keys_.size();
  std::unordered_map<std::string_view, int> rankOf;
  for (const auto& key : target) rankOf.emplace(key, static_cast<int>(rankOf.size()));

  const auto goes = [&](int row) { return !rankOf.contains(keys_[static_cast<std::size_t>(row)]); };
  for (int last = count() - 1; last >= 0; --last) {
    if (!goes(last)) continue;
    int first = last;
    while (first > 0 && goes(first - 1)) --first;
    dropRows(first, last);
    last = first;
  }

  // What has come is known by its rank from here on: the keys themselves move while rows do.
  std::vector<bool> isThere(target.size(), false);
  std::vector<int> ranks;
  ranks.reserve(keys_.size());
  for (const auto& key : keys_) {
    ranks.push_back(rankOf.at(key));
    isThere[static_cast<std::size_t>(ranks.back())] = true;
  }
  const auto staying = longestIncreasing(ranks);

  const auto ranksEnd = static_cast<int>(target.size());
  int previousRow = -1;
  for (int rank = 0; rank < ranksEnd; ++rank) {
    const auto& key = target[static_cast<std::size_t>(rank)];
    if (!isThere[static_cast<std::size_t>(rank)]) {
      int end = rank + 1;
      while (end < ranksEnd && !isThere[static_cast<std::size_t>(end)]) ++end;
      addRows(previousRow + 1, target.begin() + rank, target.begin() + end);
      previousRow += end - rank;
      rank = end - 1;
    } else if (staying.contains(rank)) {
      // Only rows that are still to be moved can stand between it and the one before it.
      do ++previousRow;
      while (keys_[static_cast<std::size_t>(previousRow)] != key);
    } else {
      const int row = static_cast<int>(std::ranges::find(keys_, key) - keys_.begin());
      // Taking the row out from before its predecessor lets that one slide up by one.
      const int to = row < previousRow ? previousRow : previousRow + 1;
      if (row != to) moveRow(row, to);
      previousRow = to;
    }
  }
  if (keys_.size() != countBefore) Q_EMIT countChanged();
}

void KeyedListModel::dropRows(int first, int last) {
  beginRemoveRows({}, first, last);
  keys_.erase(keys_.begin() + first, keys_.begin() + last + 1);
  for (int row = last; row >= first; --row) removedAt(row);
  endRemoveRows();
}

void KeyedListModel::addRows(int at, Keys first, Keys last) {
  const auto number = static_cast<int>(last - first);
  beginInsertRows({}, at, at + number - 1);
  keys_.insert(keys_.begin() + at, first, last);
  for (int each = 0; each < number; ++each) insertedAt(at + each, *(first + each));
  endInsertRows();
}

void KeyedListModel::moveRow(int from, int to) {
  beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
  auto key = std::move(keys_[static_cast<std::size_t>(from)]);
  keys_.erase(keys_.begin() + from);
  keys_.insert(keys_.begin() + to, std::move(key));
  moved(from, to);
  endMoveRows();
}

}  // namespace quillmere
