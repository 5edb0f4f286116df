// ManagedDataset: an open dataset under its handle, held by the manager and by counted references.
//
// A dataset that was closed stays usable for who holds a reference, until the command has ended: a reference that a
// procedure left behind keeps no cases.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/datasets.h"
#include "workbench/data/working/dataset.h"
#include "workbench/data/working/handed_out.h"

namespace workbench::datasets {

class ManagedDataset final : public SvrDMDataset {
 public:
  ManagedDataset(std::string handle, std::shared_ptr<data::Dataset> dataset);

  const std::string& handle() const { return handle_; }
  const std::shared_ptr<data::Dataset>& dataset() const { return dataset_; }
  // The manager holds it no longer.
  void close();

  void Retain() override { ++references_; }
  void Release() override;
  std::string GetHandle() const override;
  std::unique_ptr<VRIX_DataSource> OpenView(bool forWriting) override;

 private:
  // What is left of a closed dataset.
  class Remainder final : public data::HandedOut {
   public:
    explicit Remainder(ManagedDataset& dataset) : dataset_(dataset) {}
    void letGo() noexcept override { dataset_.dataset_.reset(); }

   private:
    ManagedDataset& dataset_;
  };

  std::string handle_;
  std::shared_ptr<data::Dataset> dataset_;
  std::int32_t references_ = 0;
  std::unique_ptr<Remainder> remainder_;
};

}  // namespace workbench::datasets
