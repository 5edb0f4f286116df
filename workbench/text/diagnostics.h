// Diagnostics: the lines for people who look into a run (BP_ToFront). They are never part of the results.
//
// Off by default. The command line turns them on with -v.
#pragma once

#include <functional>
#include <string_view>

namespace workbench::text {

class Diagnostics {
 public:
  using Sink = std::function<void(std::string_view line)>;

  // Every line from now on goes to the sink; an empty one turns diagnostics off.
  void sendTo(Sink sink) { sink_ = std::move(sink); }
  // The sink that -v sets: control characters are shown as "?", so a line cannot act on the terminal. Something may
  // have to be done before each line.
  void sendToStandardError(std::function<void()> beforeLine = {});
  void write(std::string_view line) const {
    if (sink_) sink_(line);
  }

 private:
  Sink sink_;
};

// Those of the process. Used on the procedure's thread only.
Diagnostics& diagnostics();

}  // namespace workbench::text
