#include <iostream>
#include <utility>

#include "workbench/app/command_line.h"
#include "workbench/app/program.h"
#include "workbench/output/display_text.h"
#include "workbench/runtime/interruption.h"

int main(int argumentCount, char** arguments) {
  workbench::endOnInterruption();
  auto options = workbench::app::readCommandLine(argumentCount, arguments);
  if (!options) {
    std::cerr << workbench::output::visible(options.problem().text()) << '\n';
    return 2;
  }
  return workbench::app::runProgram(std::move(*options));
}
