// The host's dataset manager: the datasets that are open, by their handles.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/data.h"
#include "host/runtime.h"

// An open dataset. The manager and every counted reference hold it.
class HOST_API SvrDMDataset {
 public:
  virtual ~SvrDMDataset();

  virtual void Retain() = 0;
  virtual void Release() = 0;
  // The name under which it is open.
  virtual std::string GetHandle() const = 0;
  // A view of its dictionary and cases, owned by the caller. With the flag false cases are only read.
  virtual std::unique_ptr<VRIX_DataSource> OpenView(bool forWriting) = 0;
};
using SvrDMItemPtr = RefCountPtr<SvrDMDataset>;

// All open datasets.
class HOST_API ServerDataManager {
 public:
  virtual ~ServerDataManager();

  static ServerDataManager& GetInstance();

  // The dataset of this name (without regard to case), or an empty reference. May throw.
  virtual SvrDMItemPtr GetDataSet(std::string_view name) = 0;
};

// A view of an open dataset as a source. Owned by who made it.
class HOST_API SvrDMInputDataSource {
 public:
  // Requires: the reference is valid. It is held as long as this object lives.
  SvrDMInputDataSource(const SvrDMItemPtr& dataset, bool forWriting);
  SvrDMInputDataSource(const SvrDMInputDataSource&) = delete;
  SvrDMInputDataSource& operator=(const SvrDMInputDataSource&) = delete;
  virtual ~SvrDMInputDataSource();

  VRIX_DataSource& operator*() const;
  // The handle of the dataset looked at.
  std::string GetHandle() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// What the host says of the command that is running.
class HOST_API HostAdapter {
 public:
  virtual ~HostAdapter();

  // The active dataset when it is a managed one (it has a handle), else null. It belongs to the manager.
  virtual SvrDMDataset* GetActiveDataset() = 0;
};

HOST_API HostAdapter& GetAdapter();
