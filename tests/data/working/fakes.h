// Builders and stand-ins for tests over datasets: a data file in memory whose reader can fail or wait, a short way to
// write down datasets, and a run that is cleared again.
#pragma once

#include <fmt/format.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/data.h"
#include "workbench/data/data_file.h"
#include "workbench/data/working/dataset.h"
#include "workbench/data/working/dataset_source.h"
#include "workbench/data/working/kept_cases.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"

namespace workbench::data::testing {

inline constexpr double missing = -std::numeric_limits<double>::max();

// Variables and rows, written down column by column.
class Data {
 public:
  Data&& numeric(const std::string& name, std::vector<double> values) && {
    Variable variable;
    variable.name = name;
    for (std::size_t row = 0; row < values.size(); ++row) {
      OBS slot{};
      slot.number = values[row];
      addTo(row, {slot});
    }
    dictionary.add(std::move(variable));
    return std::move(*this);
  }
  Data&& text(const std::string& name, std::int32_t width, const std::vector<std::string>& values) && {
    Variable variable;
    variable.name = name;
    variable.width = width;
    for (std::size_t row = 0; row < values.size(); ++row) {
      std::vector<OBS> slots(variable.slots());
      std::memset(slots.data(), ' ', slots.size() * sizeof(OBS));
      std::memcpy(slots.data(), values[row].data(), values[row].size());
      addTo(row, slots);
    }
    dictionary.add(std::move(variable));
    return std::move(*this);
  }
  Data&& filter(const std::string& name) && {
    dictionary.filter = dictionary.find(name);
    return std::move(*this);
  }

  std::shared_ptr<const KeptCases> kept() const {
    CaseKeeper keeper(CaseLayout(dictionary).caseSlots);
    for (const auto& row : rows) keeper.add(row.data(), 1, row.size());
    return keeper.finish();
  }

  Dictionary dictionary;
  std::vector<std::vector<OBS>> rows;

 private:
  void addTo(std::size_t row, const std::vector<OBS>& slots) {
    if (rows.size() <= row) rows.resize(row + 1);
    rows[row].insert(rows[row].end(), slots.begin(), slots.end());
  }
};

inline Data data() { return {}; }

// A data file that lies in memory. What its readers do is told to them by the test.
class MemoryFile final : public DataFile {
 public:
  explicit MemoryFile(Data content, std::string path = "memory.csv")
      : content_(std::move(content)), path_(std::move(path)) {}

  const Dictionary& dictionary() const override { return content_.dictionary; }
  const std::string& path() const override { return path_; }
  std::optional<std::int64_t> caseCount() const override { return static_cast<std::int64_t>(content_.rows.size()); }
  using DataFile::openReader;
  std::unique_ptr<CaseReader> openReader(const VariableSubset& wanted) const override {
    return std::make_unique<Reader>(*this, wanted);
  }
  bool isKnownIncreasing(std::int32_t variable) const override { return variable == increasing; }
  const std::vector<std::string>& warnings() const override { return warnings_; }
  std::vector<std::string> furtherFiles() const override { return further; }

  std::size_t casesPerBlock = std::numeric_limits<std::size_t>::max();
  std::function<void(std::size_t row)> beforeBlock;  // on the reader's thread
  std::vector<std::string> further;
  std::int32_t increasing = -1;  // the variable that is known to increase
  mutable std::atomic<int> passes{0};
  mutable std::atomic<std::size_t> valuesDecoded{0};
  mutable std::atomic<int> readersAlive{0};

 private:
  class Reader final : public CaseReader {
   public:
    Reader(const MemoryFile& file, VariableSubset wanted)
        : file_(file), layout_(file.dictionary()), wanted_(std::move(wanted)) {
      ++file_.passes;
      ++file_.readersAlive;
    }
    ~Reader() override { --file_.readersAlive; }
    std::optional<std::int64_t> caseCount() const override { return file_.caseCount(); }
    void fill(CaseBlock& block) override {
      if (file_.beforeBlock) file_.beforeBlock(row_);
      const auto& rows = file_.content_.rows;
      std::size_t cases = 0;
      for (; cases < std::min(block.capacity(), file_.casesPerBlock) && row_ < rows.size(); ++cases, ++row_) {
        decode(rows[row_], block.at(cases));
      }
      block.setCases(cases);
    }

   private:
    void decode(const std::vector<OBS>& row, OBS* slots) {
      for (std::int32_t index = 0; index < file_.dictionary().size(); ++index) {
        if (!wanted_.has(index)) continue;
        const std::size_t slot = layout_.slotOfVariable[static_cast<std::size_t>(index)];
        std::copy_n(row.data() + slot, file_.dictionary().at(index).slots(), slots + slot);
        ++file_.valuesDecoded;
      }
    }

    const MemoryFile& file_;
    const CaseLayout layout_;
    const VariableSubset wanted_;
    std::size_t row_ = 0;
  };

  Data content_;
  std::string path_;
  std::vector<std::string> warnings_;
};

inline std::shared_ptr<Dataset> keptDataset(Data content) {
  auto kept = content.kept();
  return std::make_shared<Dataset>(std::move(content.dictionary), std::move(kept));
}

inline std::string shown(double number) { return number == missing ? "." : fmt::to_string(number); }

// All cases of a dataset as it stands: values separated by commas, cases by blanks.
inline std::string casesOf(const Dataset& dataset) {
  std::string all;
  std::int64_t cases = 0;
  DatasetPass pass(dataset, CaseUse::onlyRead);
  while (const CaseSpan span = pass.next()) {
    for (std::size_t row = 0; row < span.count; ++row) {
      if (cases++ != 0) all += ' ';
      for (std::int32_t index = 0; index < dataset.dictionary().size(); ++index) {
        if (index != 0) all += ',';
        const Variable& variable = dataset.dictionary().at(index);
        const OBS* const slot =
            span.cases + row * span.caseSlots + pass.layout().slotOfVariable[static_cast<std::size_t>(index)];
        if (variable.isNumeric()) {
          all += shown(slot->number);
        } else {
          std::string text(slot->text, static_cast<std::size_t>(variable.width));
          text.erase(text.find_last_not_of(' ') + 1);
          all += text;
        }
      }
    }
  }
  return all;
}

// What a walk over one numeric variable sees: "position:value ...".
inline std::string walked(VRIX_DataSource& source, std::int32_t variable) {
  const auto cases = source.CreateCaseIterator(IteratorOptions::standard);
  std::string all;
  while (cases->NextCase()) {
    if (!all.empty()) all += ' ';
    all += fmt::format("{}:{}", cases->GetCurrentPosition(), shown(cases->GetObsPointer(variable)->number));
  }
  return all;
}

// A folder of its own that is gone afterwards.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "working-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder can be made");
    path_ = pattern;
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string file(const std::string& name) const { return (path_ / name).string(); }
  std::string write(const std::string& name, const std::string& content) const {
    std::ofstream(path_ / name) << content;
    return file(name);
  }
  std::string read(const std::string& name) const {
    std::ostringstream content;
    content << std::ifstream(path_ / name).rdbuf();
    return content.str();
  }
  // Names of what stands in it, separated by blanks, in alphabetical order.
  std::string listing() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    std::string all;
    for (const std::string& name : names) all += (all.empty() ? "" : " ") + name;
    return all;
  }

 private:
  std::filesystem::path path_;
};

// Restores the current run when a test is over.
class RunScope {
 public:
  RunScope() : former_(currentRun()) {}
  ~RunScope() { currentRun() = former_; }
  RunScope(const RunScope&) = delete;
  RunScope& operator=(const RunScope&) = delete;

 private:
  CurrentRun former_;
};

// The journal's lines while it lives.
class JournalLines {
 public:
  JournalLines() {
    journal().beginCommand("test");
    journal().sendTo([this](std::string_view line) { lines.append(line).push_back('\n'); });
  }
  ~JournalLines() { journal().sendTo({}); }
  JournalLines(const JournalLines&) = delete;
  JournalLines& operator=(const JournalLines&) = delete;

  std::string lines;
};

}  // namespace workbench::data::testing
