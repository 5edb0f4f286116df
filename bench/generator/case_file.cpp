#include "bench/generator/case_file.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

namespace bench {
namespace {

constexpr std::size_t pieceSize = 1U << 20U;

}  // namespace

CaseFile::CaseFile(const std::filesystem::path& path, std::string_view header, Order order)
    : path_(path), file_(path, std::ios::binary), order_(order), buffer_(header) {
  write();
}

void CaseFile::append(std::string_view line) {
  if (order_ == Order::shuffled) starts_.push_back(buffer_.size());
  buffer_ += line;
  if (order_ == Order::sorted && buffer_.size() > pieceSize) write();
}

void CaseFile::close(Chance& chance) {
  if (order_ == Order::shuffled) writeShuffled(chance);
  write();
  file_.close();
  if (!file_) throw std::runtime_error(fmt::format("{} cannot be written.", path_.string()));
}

void CaseFile::write() {
  file_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  buffer_.clear();
}

void CaseFile::writeShuffled(Chance& chance) {
  const std::string lines = std::exchange(buffer_, {});
  for (std::size_t left = starts_.size(); left > 0; --left) {
    std::swap(starts_[left - 1], starts_[static_cast<std::size_t>(chance.below(static_cast<std::int64_t>(left)))]);
    const std::size_t start = starts_[left - 1];
    buffer_.append(lines, start, lines.find('\n', start) + 1 - start);
    if (buffer_.size() > pieceSize) write();
  }
}

}  // namespace bench
