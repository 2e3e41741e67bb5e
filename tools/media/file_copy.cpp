// SPDX-License-Identifier: BSD-2-Clause
#include "media/file_copy.h"

#include "media/failure.h"
#include "media/interrupt.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iterator>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/sendfile.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace nkdraw::media {
namespace {

/// So that a signal is soon noticed.
constexpr std::int64_t kMostAtOnce = 32 << 20;

bool isForLackOfRoom(int error) {
  return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

[[noreturn]] void cannotWrite(const std::string& name, int error) {
  throw Failure(ExitCode::kOutput, "cannot write the output", name,
                std::string(std::strerror(error)) +
                    (isForLackOfRoom(error) ? "; is the disk full?" : "; check both disks"));
}

std::int64_t copyRange(int from, int to, std::int64_t place, std::size_t bytes) {
  loff_t in = place, out = place;
  return copy_file_range(from, &in, to, &out, bytes, 0);
}

std::int64_t send(int from, int to, std::int64_t place, std::size_t bytes) {
  off_t in = place;
  return lseek(to, place, SEEK_SET) < 0 ? -1 : sendfile(to, from, &in, bytes);
}

std::int64_t readAndWrite(int from, int to, std::int64_t place, std::size_t bytes) {
  std::array<char, 1 << 16> buffer;
  const ssize_t size = pread(from, buffer.data(), std::min(bytes, buffer.size()), place);
  return size <= 0 ? size : pwrite(to, buffer.data(), static_cast<std::size_t>(size), place);
}

/// Whether another way of copying may do.
bool isRefusal(int error) {
  return !isForLackOfRoom(error) && error != EIO && error != EINTR;
}

/// Takes room for the file. False if the file system can't do that.
bool takeRoom(int file, std::int64_t size, const std::string& name) {
  while (size > 0 && fallocate(file, 0, 0, size) != 0) {
    throwIfInterrupted();
    if (isForLackOfRoom(errno) || errno == EIO)
      cannotWrite(name, errno);
    if (errno != EINTR)
      return false;
  }
  return true;
}

}  // namespace

// The best first.
const FileCopy::CopySome FileCopy::kWays[] = {copyRange, send, readAndWrite};

FileCopy::FileCopy(int from, int to, std::int64_t size, std::string name)
    : from_(from),
      to_(to),
      size_(size),
      name_(std::move(name)),
      shares_(ioctl(to, FICLONE, from) == 0),
      way_(std::begin(kWays)) {
  if (shares_)
    done_ = size;
  else if (!takeRoom(to, size, name_))
    checkRoom(size);
}

void FileCopy::checkRoom(std::int64_t bytes) const {
  struct statvfs disk = {};
  if (fstatvfs(to_, &disk) == 0 &&
      static_cast<std::uint64_t>(bytes) / disk.f_frsize >= disk.f_bavail)
    cannotWrite(name_, ENOSPC);
}

/// The number of bytes copied, 0 at the end of the file; below 0 on an error.
std::int64_t FileCopy::copySome(std::size_t bytes) {
  std::int64_t copied = (*way_)(from_, to_, done_, bytes);
  while (copied < 0 && isRefusal(errno) && way_ + 1 != std::end(kWays))
    copied = (*++way_)(from_, to_, done_, bytes);
  return copied;
}

void FileCopy::advanceTo(std::int64_t end) {
  while (done_ < std::min(end, size_)) {
    throwIfInterrupted();
    const std::int64_t copied =
        copySome(static_cast<std::size_t>(std::min(size_ - done_, kMostAtOnce)));
    if (copied < 0 && errno == EINTR)
      continue;
    if (copied < 0)
      cannotWrite(name_, errno);
    if (copied == 0)
      throw Failure(ExitCode::kInput, "the input became shorter while it was copied", name_,
                    "let no other program write it");
    done_ += copied;
  }
}

void FileCopy::write(std::span<const std::uint8_t> bytes, std::int64_t place) const {
  while (!bytes.empty()) {
    const ssize_t written = pwrite(to_, bytes.data(), bytes.size(), place);
    if (written < 0 && errno != EINTR)
      cannotWrite(name_, errno);
    const auto done = static_cast<std::size_t>(std::max<ssize_t>(written, 0));
    place += static_cast<std::int64_t>(done);
    bytes = bytes.subspan(done);
  }
}

}  // namespace nkdraw::media
