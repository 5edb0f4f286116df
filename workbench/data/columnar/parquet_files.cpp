#include "workbench/data/columnar/parquet_files.h"

#include <utility>

#include "workbench/data/columnar/parquet_file.h"
#include "workbench/data/columnar/parquet_footer.h"
#include "workbench/data/columnar/parquet_list.h"
#include "workbench/data/descriptors/find_description.h"

namespace workbench::data {
namespace {

// Read through the descriptors that are open, whatever happens to their names meanwhile.
class ParquetFiles final : public StoredSource {
 public:
  ParquetFiles(std::string path, std::vector<std::string> names, std::vector<std::unique_ptr<const ParquetFile>> files,
               ParquetList list, std::optional<DescribedTable> description)
      : path_(std::move(path)),
        names_(std::move(names)),
        files_(std::move(files)),
        list_(std::move(list)),
        description_(std::move(description)) {}

  const std::string& path() const override { return path_; }
  std::string relation() const override { return list_.relation("hive_partitioning = false"); }
  Outcome<StoredOutline> outline() const override {
    std::optional<StoredOutline> outline = files_.size() == 1 ? files_.front()->outline() : std::nullopt;
    return outline ? Outcome<StoredOutline>(std::move(*outline)) : StoredSource::outline();
  }
  Outcome<std::unique_ptr<StoredRows>> rows(const WantedRows& wanted) const override {
    std::unique_ptr<StoredRows> decoded = list_.hasSameColumns() ? ParquetFile::rows(files_, wanted) : nullptr;
    return decoded ? Outcome<std::unique_ptr<StoredRows>>(std::move(decoded)) : StoredSource::rows(wanted);
  }
  std::string identity() const override {
    std::string identity = path_;
    for (const std::unique_ptr<const ParquetFile>& file : files_) identity += '|' + file->file().identity().text();
    return identity;
  }
  std::vector<std::string> files() const override { return names_; }
  Outcome<std::optional<DescribedTable>> description() const override {
    if (description_) return description_;
    const ParquetFile& first = *files_.front();
    const bool isDecoded = first.hasLayout();
    return describedByStored(isDecoded ? first.metadata(resourceKey) : resourceInFooter(first.file().descriptorPath()),
                             path_);
  }
  std::vector<std::string> warnings() const override {
    if (files_.size() != 1 || files_.front()->outline()) return list_.warnings();
    const Outcome<StoredOutline> ofDuckDb = StoredSource::outline();
    return ofDuckDb ? files_.front()->renamings(*ofDuckDb) : std::vector<std::string>();
  }

 private:
  std::string path_;
  std::vector<std::string> names_;
  std::vector<std::unique_ptr<const ParquetFile>> files_;
  ParquetList list_;
  std::optional<DescribedTable> description_;
};

}  // namespace

Outcome<std::shared_ptr<const StoredSource>> openParquetFiles(const std::string& path,
                                                              const std::vector<std::string>& names,
                                                              std::optional<DescribedTable> description) {
  std::vector<std::unique_ptr<const ParquetFile>> files;
  std::vector<std::string> descriptors;
  for (const std::string& name : names) {
    Outcome<std::unique_ptr<const ParquetFile>> file = ParquetFile::open(name);
    if (!file) return file.problem();
    descriptors.push_back((*file)->file().descriptorPath());
    files.push_back(std::move(*file));
  }
  Outcome<ParquetList> list = ParquetList::of(descriptors, names);
  if (!list) return list.problem();
  return std::shared_ptr<const StoredSource>(
      std::make_shared<ParquetFiles>(path, names, std::move(files), std::move(*list), std::move(description)));
}

}  // namespace workbench::data
