// What a filled CommandSpec holds.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/parser.h"

struct SubComObj::State {
  struct Keyword {
    std::string name;
    std::unique_ptr<ParamObj> values;
  };

  std::string name;
  std::vector<Keyword> keywords;
  std::unique_ptr<ParamObj> exportParam;
};

struct CommandSpec::State {
  struct Subcommand {
    std::string name;
    std::unique_ptr<SubComObj> content;
  };

  std::vector<Subcommand> subcommands;
};
