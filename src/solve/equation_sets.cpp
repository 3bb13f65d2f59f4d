#include "solve/equation_sets.hpp"

#include <algorithm>
#include <utility>

namespace velmor {
namespace {

constexpr int LeastWidth = 100;  // narrower bands take no time worth the effort
constexpr int Stretch = 64;      // rows that are looked at together
constexpr int MostSets = 4;      // the last one takes up what is left

/// Which equations hang together so far: a forest of parents, the root of a tree standing for all of it.
class Links {
 public:
  explicit Links(int equations) : parent_(equations), size_(equations, 1) {
    for (int e = 1; e <= equations; ++e) parent_(e) = e;
  }

  int Root(int e) {
    while (parent_(e) != e) e = parent_(e) = parent_(parent_(e));
    return e;
  }
  /// Equations in the tree of this root.
  int Size(int root) const { return size_(root); }

  void Unite(int a, int b) {
    if (parent_(a) == parent_(b)) return;
    a = Root(a);
    b = Root(b);
    if (a == b) return;
    if (size_(a) < size_(b)) std::swap(a, b);
    parent_(b) = a;
    size_(a) += size_(b);
  }

 private:
  ColumnOf<int> parent_, size_;
};

void LinkRow(const BandMatrix& K, int e, Links& links) {
  const double* const row = K.Row(e);
  const int height = K.Height(e);
  for (int d = 2; d <= height; ++d) {
    if (row[d] != 0) links.Unite(e, e + d - 1);
  }
}

/// Whether those of the equations from..to that have any link are all linked with each other.
bool HangTogether(Links& links, int from, int to) {
  int common = 0;
  for (int e = from; e <= to; ++e) {
    const int root = links.Root(e);
    if (links.Size(root) == 1 || root == common) continue;
    if (common != 0) return false;
    common = root;
  }
  return common != 0;
}

EquationSet MakeSet(const std::vector<int>& members, int room) {
  EquationSet set{ColumnOf<int>(static_cast<int>(members.size()))};
  int last = 0;
  for (int k = 1; k <= set.Count(); ++k) set.member(k) = members[static_cast<std::size_t>(k) - 1];
  for (int k = 1; k <= set.Count(); ++k) {
    while (last < set.Count() && set.member(last + 1) < set.member(k) + room) ++last;
    set.width = std::max(set.width, last - k + 1);
  }
  return set;
}

}  // namespace

int EquationSet::Rank(int equation) const {
  const int* const first = &member(0) + 1;
  return static_cast<int>(std::upper_bound(first, first + Count(), equation) - first);
}

EquationSets SeparateSets(const BandMatrix& K, int equations) {
  const int room = K.BandBound();
  if (room < LeastWidth || equations >= EquationSets::MostEquations) return {};
  Links links(equations);
  for (int e = 1; e <= equations; ++e) {
    LinkRow(K, e, links);
    if (e % Stretch == 0 && HangTogether(links, e - Stretch + 1, e)) return {};
  }

  std::vector<int> large;  // the roots of the largest trees
  for (int e = 1; e <= equations; ++e) {
    if (links.Root(e) == e && links.Size(e) > equations / 16) large.push_back(e);
  }
  std::sort(large.begin(), large.end(), [&](int a, int b) { return links.Size(a) > links.Size(b); });
  if (large.size() >= MostSets) large.resize(MostSets - 1);

  EquationSets found;
  std::vector<std::vector<int>> members(large.size() + 1);
  for (int e = 1; e <= equations; ++e) {
    const int root = links.Root(e);
    if (links.Size(root) == 1) {
      found.loose.push_back(e);
      continue;
    }
    const auto place = std::find(large.begin(), large.end(), root) - large.begin();
    members[static_cast<std::size_t>(place)].push_back(e);
  }

  double operations = 0;
  for (const std::vector<int>& list : members) {
    if (list.empty()) continue;
    found.sets.push_back(MakeSet(list, room));
    const double width = found.sets.back().width;
    // A row of the set must fit into its own place, moved to the start of a cache line.
    if (width > room - 8) return {};
    operations += static_cast<double>(list.size()) * width * width;
  }
  const double whole = static_cast<double>(equations) * room * room;
  if (operations > whole / 2) return {};
  return found;
}

}  // namespace velmor
