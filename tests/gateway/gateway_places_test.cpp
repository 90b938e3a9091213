// The order and the time in which places for children are given.

#include "gateway/sources/Places.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace std::chrono_literals;
using gateway::Patience;
using gateway::Places;
using Kind = Places::Kind;

Patience For(std::chrono::milliseconds time) { return {std::chrono::steady_clock::now() + time}; }

TEST(Places, APlaceIsRefusedWhenPatienceEndsAndGivenToTheNextRequest) {
  Places places(2, 0ms);
  auto first = places.Take(Kind::Text, For(60s));
  auto list = places.Take(Kind::List, For(60s));
  ASSERT_TRUE(first && list);
  EXPECT_FALSE(places.Take(Kind::Text, For(0ms)));
  gateway::Event gone;
  gone.Set();
  EXPECT_FALSE(places.Take(Kind::List, {std::chrono::steady_clock::now() + 60s, gone.Number()}));
  first.reset();
  EXPECT_FALSE(places.Take(Kind::List, For(0ms))) << "the last place is never a list's";
  EXPECT_TRUE(places.Take(Kind::Text, For(0ms))) << "a request that gave up blocks no other";
  list.reset();
  EXPECT_TRUE(places.Take(Kind::List, For(60s)));
}

TEST(Places, ListsGetTheirPlacesApart) {
  Places places(2, 500ms);
  const auto start = std::chrono::steady_clock::now();
  for (int time = 0; time < 3; ++time) EXPECT_TRUE(places.Take(Kind::List, For(60s)));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 1s);
  EXPECT_FALSE(places.Take(Kind::List, For(50ms))) << "its turn comes too late";
  EXPECT_TRUE(places.Take(Kind::Text, For(50ms)));
}

}  // namespace
