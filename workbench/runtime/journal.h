// Journal: every call that a procedure makes of the host, in order, with the objects created and destroyed.
//
// Off by default, and then it costs one test per call. Objects are named by their type and a number per type, counted
// from 1 within a command: "BpPivotTable#3". A line is a call as it would stand in a program:
//
//   BpPivotTable#2 = BpProcedure#1.PivotTable("Results", "Results", true)
//   BpDimension#5.Position(0, 1, false, false)
//   ~BpPivotTable#2
//
// While it is on, case iterators publish blocks of one case, so that every step reaches the host and is seen.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

class Journal {
 public:
  using Sink = std::function<void(std::string_view line)>;

  // Turns it on; every line goes to the sink at once. An empty sink turns it off.
  void sendTo(Sink sink) { sink_ = std::move(sink); }
  bool isOn() const { return pauses_ == 0 && static_cast<bool>(sink_); }

  // While one lives, the journal is off: what the host asks of its own objects is no call of the procedure.
  class Pause {
   public:
    explicit Pause(Journal& paused) : paused_(paused) { ++paused_.pauses_; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;
    ~Pause() { --paused_.pauses_; }

   private:
    Journal& paused_;
  };

  // Starts the numbering of objects anew.
  void beginCommand(std::string_view name);

  // The name of a new object of the given type, made under this address. Requires: isOn().
  std::string created(const void* object, std::string_view type);
  // The name of an object, made up at first sight ("VRIX_Variable(age)" is better passed as text by who knows it).
  std::string nameOf(const void* object, std::string_view type);
  // Writes the line of its destruction and forgets it. Does nothing for an object without a name.
  void destroyed(const void* object);
  // Forgets the name of what is no object to the procedure (a handle), without a line.
  void forget(const void* object) { names_.erase(object); }

  // One line: what was called. Requires: isOn().
  void line(std::string_view text) { sink_(text); }

  // A text in quotes, with control characters and quotes escaped; passwords are never passed.
  static std::string quoted(std::string_view text);

 private:
  Sink sink_;
  int pauses_ = 0;
  std::map<const void*, std::string> names_;
  std::map<std::string, int, std::less<>> counts_;
};

// The journal of the process. A run writes to it from the procedure's thread only.
Journal& journal();

}  // namespace workbench
