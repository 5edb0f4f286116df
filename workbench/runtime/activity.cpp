#include "workbench/runtime/activity.h"

#include <utility>

namespace workbench {

Activity& activity() {
  static Activity theActivity;
  return theActivity;
}

Activity::Stage::Stage(std::string name, Unit unit)
    : outer_(activity().exchange(View{std::move(name), unit, 0, 0, Clock::now()})) {}

Activity::Stage::~Stage() { activity().exchange(std::move(outer_)); }

std::optional<Activity::View> Activity::view() const {
  const std::lock_guard lock(mutex_);
  std::optional<View> view = stage_;
  if (!view) return view;
  view->done = at(done_, view->unit).load(relaxed);
  view->expected = at(expected_, view->unit).load(relaxed);
  return view;
}

// Gives what there was, with its amounts.
std::optional<Activity::View> Activity::exchange(std::optional<View> stage) {
  std::optional<View> before = view();
  const std::lock_guard lock(mutex_);
  stage_ = std::move(stage);
  if (stage_) {
    at(done_, stage_->unit).store(stage_->done, relaxed);
    at(expected_, stage_->unit).store(stage_->expected, relaxed);
  }
  return before;
}

}  // namespace workbench
