// ActiveSource: the active dataset behind ProcedureDataSource, replaceable by tests.
//
// The host makes one for a command and names it in the current run; ProcedureDataSource passes every call on to it. It
// outlives the ProcedureDataSource.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/data.h"

namespace workbench::data {

class Dataset;

class ActiveSource : public VRIX_DataSource {
 public:
  // A procedure's view begins: the settings are the defaults, and the number of variables added is 0 again.
  virtual void beginProcedure() = 0;
  virtual void setUseFilter(bool use) = 0;
  virtual void setSplitEndCheck(bool check) = 0;
  virtual void setMaxObsAdded(std::int32_t variables) = 0;
  virtual std::string goodVarName(std::string_view name) const = 0;
};

// The active source over a dataset. Made anew for every command, and destroyed when it has ended.
std::unique_ptr<ActiveSource> makeActiveSource(std::shared_ptr<Dataset> dataset);

}  // namespace workbench::data
