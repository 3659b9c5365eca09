#include <algorithm>
#include <map>

#include "tools/diff/mechanisms.h"
#include "tools/diff/rate_effect.h"

namespace varpre {
namespace {

// How far two reactions of one equation are from each other; 0: nothing differs.
double distance(const Mechanisms& both, int i, int j) {
  double size = std::min(effect_of(both, i, j).size, 1000.0);
  for_each_efficiency(both, both.before.partner(i), both.after.partner(j), [&](int, double e, double f) {
    size = std::max(size, std::min(relative_effect(e, f).size, 1.0));
  });
  return size;
}

class ReactionMatching {
 public:
  explicit ReactionMatching(const Mechanisms& both)
      : both_(both),
        after_(static_cast<std::size_t>(both.before.count()), -1),
        taken_(static_cast<std::size_t>(both.after.count())) {}

  Matches match() {
    match_all(true);
    match_all(false);
    Matches matches{after_, {}};
    for (std::size_t j = 0; j < taken_.size(); ++j) {
      if (!taken_[j]) matches.only_after.push_back(static_cast<int>(j));
    }
    return matches;
  }

 private:
  struct Group {
    std::vector<int> before;
    std::vector<int> after;
  };

  // Those of one equation; first pairs of forward and reverse, then what is left, one by one.
  void match_all(bool pairs) {
    std::map<std::string, Group> groups;
    for (int i = 0; i < both_.before.count(); ++i) {
      if (after_[static_cast<std::size_t>(i)] < 0 && (!pairs || both_.before.reverse(i) >= 0))
        groups[both_.before.keys[static_cast<std::size_t>(i)]].before.push_back(i);
    }
    for (int j = 0; j < both_.after.count(); ++j) {
      if (!taken_[static_cast<std::size_t>(j)] && (!pairs || both_.after.reverse(j) >= 0))
        groups[both_.after.keys[static_cast<std::size_t>(j)]].after.push_back(j);
    }
    for (auto& [key, group] : groups) match_group(group, pairs);
  }

  void match_group(Group& group, bool pairs) {
    if (group.before.size() == 1 && group.after.size() == 1)
      return take(group.before[0], group.after[0], pairs);
    take_equal(group, pairs);
    constexpr std::size_t most = 10000;  // of more duplicates the first is the first
    if (group.before.size() * group.after.size() > most) {
      for (std::size_t k = 0; k < std::min(group.before.size(), group.after.size()); ++k)
        take(group.before[k], group.after[k], pairs);
      return;
    }
    while (!group.before.empty() && !group.after.empty()) take_nearest(group, pairs);
  }

  void take_equal(Group& group, bool pairs) {
    std::erase_if(group.before, [&](int i) {
      const auto found =
          std::find_if(group.after.begin(), group.after.end(), [&](int j) { return is_equal(i, j, pairs); });
      if (found == group.after.end()) return false;
      take(i, *found, pairs);
      group.after.erase(found);
      return true;
    });
  }

  void take_nearest(Group& group, bool pairs) {
    double least = another_thing;
    std::size_t a = 0;
    std::size_t b = 0;
    for (std::size_t k = 0; k < group.before.size(); ++k) {
      for (std::size_t l = 0; l < group.after.size(); ++l) {
        const double size = apart(group.before[k], group.after[l], pairs);
        if (size >= least) continue;
        least = size;
        a = k;
        b = l;
      }
    }
    take(group.before[a], group.after[b], pairs);
    group.before.erase(group.before.begin() + static_cast<std::ptrdiff_t>(a));
    group.after.erase(group.after.begin() + static_cast<std::ptrdiff_t>(b));
  }

  double apart(int i, int j, bool pairs) const {
    const double forward = distance(both_, i, j);
    return pairs ? std::max(forward, distance(both_, both_.before.reverse(i), both_.after.reverse(j)))
                 : forward;
  }
  bool is_equal(int i, int j, bool pairs) const {
    const StoredReaction& x = both_.before.reaction(i);
    const StoredReaction& y = both_.after.reaction(j);
    return x.A == y.A && x.b == y.b && x.E == y.E && apart(i, j, pairs) == 0;
  }

  void take(int i, int j, bool pairs) {
    after_[static_cast<std::size_t>(i)] = j;
    taken_[static_cast<std::size_t>(j)] = true;
    if (pairs) take(both_.before.reverse(i), both_.after.reverse(j), false);
  }

  const Mechanisms& both_;
  std::vector<int> after_;
  std::vector<bool> taken_;
};

}  // namespace

Matches match_reactions(const Mechanisms& both) {
  return ReactionMatching(both).match();
}

}  // namespace varpre
