#include <CommandProcessor/wire/FlatMultimap.h>
#include <CommandProcessor/wire/FlatSet.h>
#include <tests/support/AllocationCounter.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <set>
#include <string>

namespace poker::test {
namespace {

std::string elementOf(int key) { return std::to_string(key) + std::string(20, 'v'); }

// Spare elements behind the end, left there by clear() and erase(), must never show through.
RC_GTEST_PROP(FlatSet, BehavesAsAnOrderedSet, ()) {
  FlatSet<std::string> flat;
  std::set<std::string> model;
  const auto steps = *rc::gen::container<std::vector<std::pair<int, int>>>(
      rc::gen::pair(rc::gen::inRange(0, 12), rc::gen::inRange(-8, 8)));
  for (const auto& [kind, key] : steps) {
    const std::string element = elementOf(key);
    switch (kind) {
      case 0:
        flat.clear();
        model.clear();
        break;
      case 1: {
        FlatSet<std::string> copy{"old"};
        copy = flat;
        RC_ASSERT(copy == flat);
        flat = std::move(copy);
        break;
      }
      case 2: {
        FlatSet<std::string> moved(std::move(flat));
        flat = FlatSet<std::string>(moved);
        break;
      }
      case 3:
        flat.spare() = element;  // what is begun and not adopted leaves no trace
        break;
      case 4:
      case 5:
      case 6:
        RC_ASSERT(flat.erase(element) == (model.erase(element) == 1));
        break;
      default:
        RC_ASSERT(flat.insert(element) == model.insert(element).second);
    }
    RC_ASSERT(flat.size() == model.size());
    RC_ASSERT(flat.empty() == model.empty());
    RC_ASSERT(std::equal(flat.begin(), flat.end(), model.begin(), model.end()));
    RC_ASSERT(flat.contains(element) == model.contains(element));
  }
}

RC_GTEST_PROP(FlatSet, FilledInAnyOrderIsAsIfInsertedOneByOne, (const std::vector<std::int8_t>& keys)) {
  FlatSet<std::string> flat;
  std::set<std::string> model;
  for (const int key : keys) {
    flat.spare() = elementOf(key % 32);
    flat.appendSpare();
    model.insert(elementOf(key % 32));
  }
  flat.order();
  RC_ASSERT(std::equal(flat.begin(), flat.end(), model.begin(), model.end()));
}

TEST(FlatSet, OrdersTextByUnsignedBytesAndRefillsWithoutAllocation) {
  const std::string first = elementOf(1), second = std::string("\x80").append(elementOf(2));
  const std::string third = std::string("\xFF").append(elementOf(3));
  FlatSet<std::string> set{third, first, second, first};
  EXPECT_TRUE(std::equal(set.begin(), set.end(), std::begin({first, second, third})));
  const auto fill = [&] {
    set.clear();
    for (const std::string* element : {&first, &second, &third}) set.insert(*element);
  };
  fill();
  const AllocationCounter allocations;
  for (int i = 0; i < 100; ++i) fill();
  EXPECT_TRUE(set.contains(std::string_view(third)));
  EXPECT_EQ(allocations.calls(), 0u);
}

RC_GTEST_PROP(FlatMultimap, BehavesAsAnOrderedMultimap, (const std::vector<std::int8_t>& keys)) {
  FlatMultimap<int, int> flat, appended;
  std::multimap<int, int> model;
  int stamp = 0;
  for (const int key : keys) {
    const auto place = flat.insert({key % 8, ++stamp});
    RC_ASSERT(place->second == stamp);
    model.insert({key % 8, stamp});
    appended.append({key % 8, stamp});
  }
  appended.order();
  const auto same = [](const auto& a, const auto& b) { return a.first == b.first && a.second == b.second; };
  RC_ASSERT(flat.size() == model.size());
  RC_ASSERT(std::equal(flat.begin(), flat.end(), model.begin(), model.end(), same));
  RC_ASSERT(std::equal(appended.begin(), appended.end(), model.begin(), model.end(), same));
  for (int key = -9; key <= 9; ++key) {
    const auto [first, last] = flat.equal_range(key);
    const auto [modelFirst, modelLast] = model.equal_range(key);
    RC_ASSERT(std::equal(first, last, modelFirst, modelLast, same));
  }
  flat.clear();
  RC_ASSERT(flat.empty());
}

}  // namespace
}  // namespace poker::test
