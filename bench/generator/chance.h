// Random numbers that are the same on every machine: the engine is, the standard distributions are not.
#pragma once

#include <cstdint>
#include <random>

namespace bench {

class Chance {
 public:
  explicit Chance(std::uint64_t seed) : engine_(seed) {}

  std::uint64_t bits() { return engine_(); }
  // Requires: bound > 0.
  std::int64_t below(std::int64_t bound) {
    return static_cast<std::int64_t>(bits() % static_cast<std::uint64_t>(bound));
  }
  bool percent(int of100) { return below(100) < of100; }

 private:
  std::mt19937_64 engine_;
};

// Takes exactly `wanted` of `total` things that come by one after the other, each with the same chance.
class Selection {
 public:
  Selection(std::int64_t wanted, std::int64_t total) : wanted_(wanted), total_(total) {}

  // Requires: called at most `total` times.
  bool takes(Chance& chance) {
    const bool taken = chance.below(total_) < wanted_;
    --total_;
    wanted_ -= taken ? 1 : 0;
    return taken;
  }

 private:
  std::int64_t wanted_;
  std::int64_t total_;
};

}  // namespace bench
