// A run with outputs: a temporary folder, a place where datasets are opened, and a manager that knows one dataset.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/data.h"
#include "host/datasets.h"
#include "tests/data/working/fakes.h"
#include "workbench/data/output_set.h"

namespace workbench::data::testing {

class OpenedDatasets final : public OutputDatasets {
 public:
  void openOutput(const std::string& handle, std::shared_ptr<Dataset> dataset) override { opened[handle] = dataset; }
  std::map<std::string, std::shared_ptr<Dataset>> opened;
};

// A manager that knows one dataset, or that fails.
class OneDataset final : public ServerDataManager, public HostAdapter {
 public:
  class Only final : public SvrDMDataset {
   public:
    void Retain() override {}
    void Release() override {}
    std::string GetHandle() const override { return "first"; }
    std::unique_ptr<VRIX_DataSource> OpenView(bool) override { return nullptr; }
  };
  SvrDMItemPtr GetDataSet(std::string_view name) override {
    if (fails) throw std::runtime_error("the manager is out of order");
    return name == "first" ? SvrDMItemPtr(&only) : SvrDMItemPtr();
  }
  SvrDMDataset* GetActiveDataset() override { return &only; }
  Only only;
  bool fails = false;
};

class Outputs : public ::testing::Test {
 protected:
  Outputs() {
    currentRun().outputs = &outputs_;
    currentRun().datasets = &manager_;
    currentRun().adapter = &manager_;
  }

  // Why a specification fails, or nothing.
  std::string refusal(std::string_view name, bool isQuoted, bool forOutput) {
    UserCaseFileSpec spec;
    const bool isFine = spec.Init(name, isQuoted, forOutput);
    EXPECT_EQ(isFine, spec.IsValid());
    EXPECT_EQ(isFine, spec.ErrorText().empty());
    return spec.ErrorText();
  }
  // Opens an output over a name.
  std::unique_ptr<UserOutputCaseFile> open(const std::string& name) {
    specs_.push_back(std::make_unique<UserCaseFileSpec>());
    EXPECT_TRUE(specs_.back()->Init(name, false, true, "", false)) << specs_.back()->ErrorText();
    return std::make_unique<UserOutputCaseFile>(*specs_.back());
  }
  // Writes two cases of one variable, without closing it.
  static void write(VRIX_DataSource& source) {
    source.MakeVariable(0, nullptr).SetName("x");
    source.CommitDictionary();
    for (const double value : {1.0, 2.0}) {
      OBS slot{};
      slot.number = value;
      source.WriteCase(&slot);
    }
  }

  RunScope run_;
  TemporaryFolder folder_;
  OpenedDatasets opened_;
  OneDataset manager_;
  std::vector<std::unique_ptr<UserCaseFileSpec>> specs_;
  OutputSet outputs_{&opened_};
};

}  // namespace workbench::data::testing
