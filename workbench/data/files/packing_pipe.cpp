#include "workbench/data/files/packing_pipe.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <system_error>
#include <utility>

#include "host/messages.h"
#include "workbench/data/files/packed_text_file.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr std::size_t textBytes = std::size_t{1} << 18;

Problem openingProblem(std::string_view why, const OutputFile& file) {
  return {text::sentence("The file cannot be written (^1).", {why}), file.path(), ""};
}

void closeEnd(int& descriptor) {
  if (descriptor >= 0) ::close(std::exchange(descriptor, -1));
}

}  // namespace

Outcome<std::unique_ptr<PackingPipe>> PackingPipe::open(OutputFile& file, Packing packing) {
  std::unique_ptr<PackingPipe> pipe(new PackingPipe(file, packing));
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return openingProblem(std::strerror(errno), file);
  pipe->readEnd_ = ends[0];
  pipe->writeEnd_ = ends[1];
  try {
    pipe->thread_ = std::thread([packing = pipe.get()] { packing->packAll(); });
  } catch (const std::system_error& error) {
    return openingProblem(error.what(), file);
  }
  return pipe;
}

PackingPipe::PackingPipe(OutputFile& file, Packing packing)
    : file_(file), packer_(makePacker(packing)), buffer_(textBytes) {}

PackingPipe::~PackingPipe() {
  endText();
  if (thread_.joinable()) thread_.join();
  closeEnd(readEnd_);
}

std::string PackingPipe::descriptorPath() const { return fmt::format("/proc/self/fd/{}", writeEnd_); }

// The system sends the signal to the thread that writes. Blocked there it waits, and goes when the thread ends.
void PackingPipe::keepSignalFromThisThread() {
  sigset_t signals;
  ::sigemptyset(&signals);
  ::sigaddset(&signals, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void PackingPipe::endText() { closeEnd(writeEnd_); }

void PackingPipe::finish() {
  if (thread_.joinable()) thread_.join();
  if (failure_) std::rethrow_exception(failure_);
}

void PackingPipe::packAll() {
  try {
    for (TextPart part = TextPart::further; part != TextPart::last;) {
      const std::string_view text = nextText();
      if (text.size() < buffer_.size()) part = TextPart::last;
      writePacked(*packer_, text, part, file_);
    }
  } catch (...) {
    failure_ = std::current_exception();
  }
  closeEnd(readEnd_);
}

// Fills the buffer but at the end: whatever the packer does, the pace at which the text comes is nothing it can see.
std::string_view PackingPipe::nextText() {
  std::size_t filled = 0;
  while (filled < buffer_.size()) {
    const ssize_t bytes = ::read(readEnd_, buffer_.data() + filled, buffer_.size() - filled);
    if (bytes == 0) break;
    if (bytes < 0 && errno != EINTR) throw ErrorText(openingProblem(std::strerror(errno), file_).text());
    if (bytes > 0) filled += static_cast<std::size_t>(bytes);
  }
  return {buffer_.data(), filled};
}

}  // namespace workbench::data
