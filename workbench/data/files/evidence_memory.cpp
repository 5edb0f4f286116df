#include "workbench/data/files/evidence_memory.h"

#include <utility>

namespace workbench::data {
namespace {

constexpr std::size_t mostRemembered = 16;

// A scan of the same text is one by the same declarations only when these say the same of its names.
bool isDeclaredSo(const FileEvidence& evidence, const DeclareColumns& declare) {
  if (!declare) return evidence.declared == DeclaredColumns(evidence.header.size());
  const Outcome<DeclaredColumns> declared = declare(evidence.header);
  return declared && *declared == evidence.declared;
}

}  // namespace

SharedEvidence EvidenceMemory::find(const FileIdentity& identity, Packing packing, const TableDialect& dialect,
                                    const DeclareColumns& declare) {
  const std::lock_guard lock(mutex_);
  for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
    const FileEvidence& evidence = *entry->evidence;
    const bool isSameText = evidence.identity == identity && entry->packing == packing && evidence.dialect == dialect;
    if (!isSameText || !isDeclaredSo(evidence, declare)) continue;
    entries_.splice(entries_.begin(), entries_, entry);
    return entry->evidence;
  }
  return nullptr;
}

void EvidenceMemory::remember(SharedEvidence evidence, Packing packing) {
  const std::lock_guard lock(mutex_);
  entries_.push_front({std::move(evidence), packing});
  if (entries_.size() > mostRemembered) entries_.pop_back();
}

EvidenceMemory& evidenceMemory() {
  static EvidenceMemory memory;
  return memory;
}

}  // namespace workbench::data
