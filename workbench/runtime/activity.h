// Activity: what the program is doing and how far it has come, for whoever shows it.
//
// Who works adds what is done, a block at a time: one addition to a number that nobody waits for. Who shows it looks
// from a thread of its own. Amounts are shown for nothing but that, so what is added outside a stage does no harm.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

namespace workbench {

class Activity {
 public:
  // What the work of a stage is measured in.
  enum class Unit : std::size_t { bytes, cases };
  using Clock = std::chrono::steady_clock;

  struct View {
    std::string name;  // of the stage, for people
    Unit unit = Unit::cases;
    std::int64_t done = 0;
    std::int64_t expected = 0;  // 0: not known
    Clock::time_point since;
  };

  // A part of the work, as long as this object lives. Stages nest, and what is added counts for the innermost one.
  class Stage {
   public:
    Stage(std::string name, Unit unit);
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage();

   private:
    std::optional<View> outer_;
  };

  // How much more there is to do; negative where less is done than was expected.
  void expect(Unit unit, std::int64_t amount) noexcept { at(expected_, unit).fetch_add(amount, relaxed); }
  void add(Unit unit, std::int64_t amount) noexcept { at(done_, unit).fetch_add(amount, relaxed); }

  // Nothing outside a stage.
  std::optional<View> view() const;

 private:
  using Amounts = std::array<std::atomic<std::int64_t>, 2>;
  static constexpr std::memory_order relaxed = std::memory_order_relaxed;
  static std::atomic<std::int64_t>& at(Amounts& amounts, Unit unit) { return amounts[static_cast<std::size_t>(unit)]; }

  std::optional<View> exchange(std::optional<View> stage);

  mutable std::mutex mutex_;  // guards the stage but for its amounts
  std::optional<View> stage_;
  mutable Amounts expected_{};
  mutable Amounts done_{};
};

Activity& activity();

}  // namespace workbench
