// EvidenceMemory: the scans of this process that may be of use once more. Least recently used ones go first.
#pragma once

#include <list>
#include <mutex>

#include "workbench/data/files/file_evidence.h"

namespace workbench::data {

class EvidenceMemory {
 public:
  // Null when no such scan is remembered. Requires: the dialect has a delimiter.
  SharedEvidence find(const FileIdentity& identity, Packing packing, const TableDialect& dialect,
                      const DeclareColumns& declare);
  void remember(SharedEvidence evidence, Packing packing);

 private:
  struct Entry {
    SharedEvidence evidence;
    Packing packing;
  };
  std::mutex mutex_;
  std::list<Entry> entries_;
};

// The one of the process.
EvidenceMemory& evidenceMemory();

}  // namespace workbench::data
