#include <CommandProcessor/wire/FlatMap.h>
#include <tests/support/AllocationCounter.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <string>

namespace poker::test {
namespace {

using Flat = FlatMap<int, std::string>;
using Model = std::map<int, std::string>;

void expectSame(const Flat& flat, const Model& model) {
  RC_ASSERT(flat.size() == model.size());
  RC_ASSERT(flat.empty() == model.empty());
  RC_ASSERT(std::equal(flat.begin(), flat.end(), model.begin(),
                       [](const auto& a, const auto& b) { return a.first == b.first && a.second == b.second; }));
}

// Spare entries behind the end, left there by clear() and erase(), must never show through.
RC_GTEST_PROP(FlatMap, BehavesAsAnOrderedMap, ()) {
  Flat flat;
  Model model;
  const auto steps = *rc::gen::container<std::vector<std::pair<int, int>>>(
      rc::gen::pair(rc::gen::inRange(0, 20), rc::gen::inRange(-8, 8)));
  int stamp = 0;
  for (const auto& [kind, key] : steps) {
    const std::string value = std::to_string(++stamp) + std::string(20, 'v');
    switch (kind) {
      case 0: {
        flat.clear();
        model.clear();
        break;
      }
      case 1: {
        Flat copy;
        copy.set(99, "old");
        copy = flat;
        RC_ASSERT(copy == flat);
        flat = std::move(copy);
        break;
      }
      case 2: {
        Flat moved(std::move(flat));
        flat = Flat(moved);
        break;
      }
      case 3:
        flat.shrink_to_fit();
        break;
      case 4:
      case 5:
      case 6:
        RC_ASSERT(flat.erase(key) == (model.erase(key) == 1));
        break;
      case 7:
      case 8:
        RC_ASSERT(flat[key] == model[key]);
        break;
      case 9:
      case 10:
      case 11: {
        auto& [spareKey, spareValue] = flat.spare();  // what is begun and not adopted leaves no trace
        spareKey = key;
        spareValue = value;
        if (kind == 9) break;
        flat.appendSpare();
        flat.order();
        model[key] = value;
        break;
      }
      default:
        flat.set(key, value);
        model[key] = value;
    }
    expectSame(flat, model);
    const auto found = flat.find(key);
    RC_ASSERT((found != flat.end()) == model.contains(key));
    RC_ASSERT(flat.contains(key) == model.contains(key));
    if (found != flat.end()) RC_ASSERT(found->second == model[key]);
  }
}

// As a peer may send them: in any order, keys more than once.
RC_GTEST_PROP(FlatMap, FilledInAnyOrderIsAsIfInsertedOneByOne, (const std::vector<std::int8_t>& keys)) {
  Flat flat{{5, "of an earlier use"}};
  Model model;
  flat.clear();
  for (const int key : keys) {
    const std::string value = std::to_string(model.size()) + std::string(20, 'v');
    auto& [spareKey, spareValue] = flat.spare();
    spareKey = key % 32;
    spareValue = value;
    flat.appendSpare();
    model[key % 32] = value;
  }
  flat.order();
  expectSame(flat, model);
}

TEST(FlatMap, OrdersTextByUnsignedBytesAndFindsItWithoutAString) {
  const FlatMap<std::string, int> map{{"\x80", 3}, {"b", 2}, {"B", 1}, {"b", 4}};
  ASSERT_EQ(map.size(), 3u);
  EXPECT_EQ(map.begin()->first, "B");
  EXPECT_EQ((map.end() - 1)->first, "\x80");
  const AllocationCounter allocations;
  EXPECT_EQ(map.find(std::string_view("b"))->second, 4);
  EXPECT_FALSE(map.contains("no key of this map, and a long one"));
  EXPECT_EQ(allocations.calls(), 0u);
}

TEST(FlatMap, RefilledAfterClearAllocatesNothing) {
  FlatMap<std::string, std::string> map;
  const std::string keys[] = {"the first key of this map", "another key of this map", "a key in front of this map"};
  const auto fill = [&] {
    map.clear();
    for (const auto& key : keys) map.set(key, key);
  };
  // Entries change places while the map grows: every spare must have grown to its key once.
  for (int i = 0; i < 5; ++i) fill();
  const AllocationCounter allocations;
  for (int i = 0; i < 100; ++i) fill();
  EXPECT_EQ(allocations.calls(), 0u);
}

}  // namespace
}  // namespace poker::test
