#include "workbench/data/files/encoded_source.h"

#include <fmt/format.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::size_t inputBytes = std::size_t{1} << 16;
constexpr std::size_t longestTail = 64;  // more than any character takes

struct CloseConverter {
  void operator()(UConverter* converter) const { ::ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

// Null when the name is not known. A comma would begin options of the library's own.
Converter converterOf(const std::string& encoding) {
  if (encoding.empty() || encoding.find(',') != std::string::npos) return nullptr;
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(::ucnv_open(encoding.c_str(), &status));
  return U_SUCCESS(status) ? std::move(converter) : nullptr;
}

std::string_view nameOf(const UConverter* converter) {
  UErrorCode status = U_ZERO_ERROR;
  return ::ucnv_getName(converter, &status);
}

class EncodedSource final : public ByteSource {
 public:
  EncodedSource(std::unique_ptr<ByteSource> source, std::string encoding, Converter from, Converter into)
      : source_(std::move(source)),
        encoding_(std::move(encoding)),
        from_(std::move(from)),
        into_(std::move(into)),
        input_(inputBytes) {
    UErrorCode status = U_ZERO_ERROR;
    ::ucnv_setToUCallBack(from_.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ::ucnv_setFromUCallBack(into_.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  }

  Outcome<std::size_t> read(char* into, std::size_t room) override {
    char* target = into;
    while (target == into && !isDone_) {
      if (next_ == filled_ && !sourceIsEmpty_) {
        if (Outcome<Done> filled = fill(); !filled) return filled.problem();
      }
      if (Outcome<Done> converted = convert(target, into + room); !converted) return converted.problem();
    }
    return static_cast<std::size_t>(target - into);
  }

 private:
  Outcome<Done> fill() {
    const bool isStart = offset_ == 0 && filled_ == 0;
    offset_ += filled_;
    tail_ += std::string_view(input_.data(), filled_);
    tail_.erase(0, tail_.size() - std::min(tail_.size(), longestTail));
    next_ = filled_ = 0;
    constexpr std::size_t longestMark = 4;
    do {
      const Outcome<std::size_t> bytes = source_->read(input_.data() + filled_, input_.size() - filled_);
      if (!bytes) return bytes.problem();
      filled_ += *bytes;
      sourceIsEmpty_ = *bytes == 0;
    } while (isStart && filled_ < longestMark && !sourceIsEmpty_);
    if (isStart && filled_ != 0 && !hasNeededMark()) {
      return Problem{text::sentence("The file is to be ^1, and it has no byte order mark at its start.", {encoding_}),
                     "",
                     text::sentence("Name ^1LE or ^1BE, whichever it is, or save it as UTF-8.", {nameOf(from_.get())})};
    }
    return Done{};
  }

  bool hasNeededMark() const {
    using namespace std::string_view_literals;
    const std::string_view start(input_.data(), filled_);
    const std::string_view name = nameOf(from_.get());
    if (name == "UTF-16") return start.starts_with("\xFE\xFF"sv) || start.starts_with("\xFF\xFE"sv);
    if (name == "UTF-32") return start.starts_with("\x00\x00\xFE\xFF"sv) || start.starts_with("\xFF\xFE\x00\x00"sv);
    return true;
  }

  Outcome<Done> convert(char*& target, const char* targetEnd) {
    const char* next = input_.data() + next_;
    UErrorCode status = U_ZERO_ERROR;
    ::ucnv_convertEx(into_.get(), from_.get(), &target, targetEnd, &next, input_.data() + filled_, pivot_.data(),
                     &pivotNext_, &pivotEnd_, pivot_.data() + pivot_.size(), false, sourceIsEmpty_, &status);
    next_ = static_cast<std::size_t>(next - input_.data());
    if (status == U_BUFFER_OVERFLOW_ERROR) return Done{};
    if (U_FAILURE(status)) return badBytes();
    isDone_ = sourceIsEmpty_;
    return Done{};
  }

  Problem badBytes() const {
    std::array<char, 32> bytes{};
    std::int8_t length = static_cast<std::int8_t>(bytes.size());
    UErrorCode status = U_ZERO_ERROR;
    ::ucnv_getInvalidChars(from_.get(), bytes.data(), &length, &status);
    const std::string_view bad(bytes.data(), static_cast<std::size_t>(length));
    std::string shown;
    for (const char byte : bad) {
      shown += fmt::format("{}0x{:02X}", shown.empty() ? "" : " ", static_cast<unsigned char>(byte));
    }
    return {
        text::sentence(bad.size() == 1 ? "The byte ^1 at offset ^2 is no ^3." : "The bytes ^1 at offset ^2 are no ^3.",
                       {shown, fmt::to_string(offsetOf(bad)), encoding_}),
        "", text::sentence("Name the encoding that the file has, or save it as UTF-8.")};
  }

  // Where the bytes stand that were refused last. To see that they are wrong the converter may have read beyond them.
  std::uint64_t offsetOf(std::string_view bad) const {
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t readBeyond = ::ucnv_toUCountPending(from_.get(), &status);
    const std::string recent = tail_ + std::string(input_.data(), next_);
    const std::size_t last = recent.size() - bad.size() - static_cast<std::size_t>(std::max(readBeyond, 0));
    const std::size_t found = recent.rfind(bad, last);
    return offset_ - tail_.size() + (found == std::string::npos ? last : found);
  }

  std::unique_ptr<ByteSource> source_;
  std::string encoding_;
  Converter from_;
  Converter into_;
  std::vector<char> input_;
  std::size_t next_ = 0;      // of the input, the next to be converted
  std::size_t filled_ = 0;    // of the input
  std::uint64_t offset_ = 0;  // of the input's first byte in the source
  std::string tail_;          // what stood before the input
  bool sourceIsEmpty_ = false;
  bool isDone_ = false;
  std::array<UChar, 4096> pivot_{};  // between the encodings
  UChar* pivotNext_ = pivot_.data();
  UChar* pivotEnd_ = pivot_.data();
};

}  // namespace

std::optional<std::string> encodingProblem(const std::string& encoding) {
  if (encoding.empty() || converterOf(encoding) != nullptr) return std::nullopt;
  return text::sentence("\"^1\" is no encoding that is known; name it as IANA does, like utf-8 or windows-1252.",
                        {encoding});
}

bool isUtf8(const std::string& encoding) {
  if (encoding.empty()) return true;
  const Converter converter = converterOf(encoding);
  return converter != nullptr && nameOf(converter.get()) == "UTF-8";
}

Outcome<std::unique_ptr<ByteSource>> asUtf8(std::unique_ptr<ByteSource> source, const std::string& encoding) {
  if (const std::optional<std::string> wrong = encodingProblem(encoding)) return Problem{*wrong, "", ""};
  if (isUtf8(encoding)) return source;
  return std::unique_ptr<ByteSource>(
      std::make_unique<EncodedSource>(std::move(source), encoding, converterOf(encoding), converterOf("UTF-8")));
}

}  // namespace workbench::data
