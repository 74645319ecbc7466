#include "platform/worker_team.h"

#include <atomic>
#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace orvandel {
namespace {

TEST(WorkerTeam, CallsTheBodyOnceForEachIndex) {
  WorkerTeam team;
  for (const std::size_t size : {1U, 2U, 4U, 1U}) {
    team.Resize(size);
    EXPECT_GE(team.Size(), 1U);
    EXPECT_LE(team.Size(), size);
    for (const std::size_t count : {0U, 1U, 2U, 7U, 1000U}) {
      std::vector<std::atomic<int>> calls(count);
      std::atomic<bool> strangers = false;
      team.Run(count, [&](std::size_t i, std::size_t worker) {
        ++calls[i];
        if (worker >= team.Size()) strangers = true;
      });
      for (const auto& number : calls)
        EXPECT_EQ(number, 1);
      EXPECT_FALSE(strangers);
    }
  }
}

TEST(WorkerTeam, WhatABodyThrowsArrives) {
  WorkerTeam team;
  for (const std::size_t size : {1U, 3U}) {
    team.Resize(size);
    EXPECT_THROW(team.Run(10,
                          [](std::size_t i, std::size_t) {
                            if (i == 4) throw std::runtime_error("four");
                          }),
                 std::runtime_error);
    // And the team works on.
    std::atomic<int> sum = 0;
    team.Run(5, [&sum](std::size_t i, std::size_t) { sum += static_cast<int>(i); });
    EXPECT_EQ(sum, 0 + 1 + 2 + 3 + 4);
  }
}

TEST(WorkerTeam, MayBeMoved) {
  WorkerTeam team;
  team.Resize(2);
  WorkerTeam other = std::move(team);
  std::atomic<int> number = 0;
  other.Run(20, [&number](std::size_t, std::size_t) { ++number; });
  EXPECT_EQ(number, 20);
}

}  // namespace
}  // namespace orvandel
