// CurrentRun: what the functions of host/ refer to while a command runs.
//
// The host's functions have no argument that says which run they belong to, so there is one, for the process. The
// command runner fills it before a command and empties it afterwards; tests fill it with fakes. All pointers look; none
// owns. Used on the procedure's thread only, the settings excepted, which do not change while a command runs.
#pragma once

#include <string>
#include <vector>

class ServerDataManager;
class HostAdapter;
class TokenInfoObj;

namespace workbench {

namespace output {
struct Command;
}
namespace data {
class ActiveSource;
class OutputSet;
}  // namespace data
namespace text {
class Wording;
}

// What a user can set for the commands that follow.
struct Settings {
  double tolerance = 1e-12;  // of near equality, relative
  std::string collation;     // a locale, or empty: the order of the bytes
};

struct CurrentRun {
  Settings settings;
  output::Command* command = nullptr;                 // where messages, notes and tables of the command go
  const std::vector<TokenInfoObj>* tokens = nullptr;  // the command's tokens, its name left out
  int commandLine = 1;                                // where the command's name stands in the job, from 1
  int commandColumn = 1;                              // counts characters
  data::ActiveSource* activeSource = nullptr;         // what ProcedureDataSource shows
  data::OutputSet* outputs = nullptr;                 // where the command's output files stand until it has ended
  ServerDataManager* datasets = nullptr;              // what ServerDataManager::GetInstance gives
  HostAdapter* adapter = nullptr;                     // what GetAdapter gives
  const text::Wording* wording = nullptr;             // the language of what people see
};

CurrentRun& currentRun();

}  // namespace workbench
