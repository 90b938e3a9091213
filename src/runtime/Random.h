// Random numbers, seeded from the system. For nonces, not for keys.
#pragma once

#include <cstdint>
#include <random>

class Random {
 public:
  // A whole number from least to greatest, both included.
  std::int64_t InRange(std::int64_t least, std::int64_t greatest) {
    return std::uniform_int_distribution<std::int64_t>(least, greatest)(engine_);
  }

 private:
  std::mt19937_64 engine_{std::random_device{}()};
};
