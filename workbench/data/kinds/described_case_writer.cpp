#include "workbench/data/kinds/described_case_writer.h"

#include <utility>

#include "workbench/data/files/dictionary_output.h"

namespace workbench::data {
namespace {

// Cases in one file, their dictionary in another: put into place together.
class DescribedCaseWriter final : public CaseWriter {
 public:
  DescribedCaseWriter(std::unique_ptr<CaseWriter> cases, std::unique_ptr<DictionaryOutput> dictionary)
      : cases_(std::move(cases)), dictionary_(std::move(dictionary)) {}

  std::vector<std::string> warnings() const override { return dictionary_->losses(); }
  void append(const OBS* cases, std::size_t count, std::size_t caseSlots) override {
    cases_->append(cases, count, caseSlots);
  }
  void complete() override {
    cases_->complete();
    dictionary_->complete();
  }
  void commit() override {
    cases_->commit();
    dictionary_->commit();
  }

 private:
  std::unique_ptr<CaseWriter> cases_;
  std::unique_ptr<DictionaryOutput> dictionary_;
};

}  // namespace

Outcome<std::unique_ptr<CaseWriter>> describedBeside(const std::string& path, std::optional<char> delimiter,
                                                     const Dictionary& dictionary, const Secret& password,
                                                     std::unique_ptr<CaseWriter> cases) {
  auto written = DictionaryOutput::create(path, delimiter, dictionary, password);
  if (!written) return written.problem();
  return std::unique_ptr<CaseWriter>(std::make_unique<DescribedCaseWriter>(std::move(cases), std::move(*written)));
}

}  // namespace workbench::data
