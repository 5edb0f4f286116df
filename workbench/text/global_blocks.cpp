// The two blocks of plain data that a procedure may look at: the host's global state and the machine constants.

#include <cmath>
#include <limits>

#include "host/runtime.h"
#include "workbench/runtime/journal.h"

namespace {

CmnMch machineConstants() {
  constexpr double highest = std::numeric_limits<double>::max();
  CmnMch block;
  block.constants[CmnMch::systemMissing] = -highest;
  block.constants[CmnMch::lowSentinel] = -std::numeric_limits<double>::infinity();
  block.constants[CmnMch::highestNumber] = highest;
  block.constants[CmnMch::lowestValidNumber] = std::nextafter(-highest, 0.0);
  return block;
}

}  // namespace

CmnGlb* pvGetCmnGlb() {
  static CmnGlb block;
  if (workbench::journal().isOn()) workbench::journal().line("pvGetCmnGlb()");
  return &block;
}

const CmnMch* pvGetCmnMch() {
  static const CmnMch block = machineConstants();
  if (workbench::journal().isOn()) workbench::journal().line("pvGetCmnMch()");
  return &block;
}
