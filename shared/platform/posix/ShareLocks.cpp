// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The idea. Every opener marks what it does and what it denies, and refuses itself when it finds
// another opener's mark against it. There are four kinds of marks: reads, writes, denies reading,
// denies writing. A reader looks for "denies reading", who denies reading looks for readers, and
// likewise for writing. One lock word of the two states shared and exclusive cannot say this: two
// who both only write may both deny reading, and a reader may meet any number of readers but none
// of them.
//
// A mark is a record lock that belongs to the open file description (F_OFD_SETLK): it conflicts
// between two descriptors of one process as between processes, and goes when the last copy of the
// descriptor is closed, also by a crash. Each kind owns a range of offsets. A readable descriptor
// takes a shared lock on the first offset of the range, where any number fit; a write-only one may
// only take exclusive locks and looks for a free offset behind it. Asking who else holds anything
// in a range (F_OFD_GETLK) needs neither access.
//
// Locks of other programs count for what they mean: a shared one of somebody who reads and wants no
// writing meanwhile, an exclusive one of somebody who writes alone. They are known by their length,
// since a mark has one byte. When a foreign shared lock was there before a mark it hides that mark.
//
// Marks are set before the check, so of two racing openers that exclude each other never both get
// through. That both refuse themselves is prevented by a gate: the whole-file lock of flock, which
// is a word of its own, held only while marking and checking. Who finds it taken for long goes on
// without it.

#include "shared/platform/posix/ShareLocks.h"

#include <fcntl.h>
#include <sys/file.h>
#include <time.h>

#include <cerrno>

namespace shr::platform {
namespace {

constexpr off_t MARKS_BEGIN = 0x7fff'0000'0000'0000;
constexpr off_t MARKS_PER_KIND = 4096;

enum class Mark { Reads, Writes, DeniesReading, DeniesWriting };

off_t BeginOf(Mark mark) {
  return MARKS_BEGIN + static_cast<off_t>(mark) * MARKS_PER_KIND;
}

/// The outcome of one step of the registration.
enum class Step { Done, Conflict, Unsupported };

Step StepFromErrno() {
  return errno == EAGAIN || errno == EACCES ? Step::Conflict : Step::Unsupported;
}

struct flock MakeLock(short type, off_t begin, off_t length) {
  struct flock lock = {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = begin;
  lock.l_len = length;
  return lock;
}

/// Holds the gate for its lifetime, if it can be had within a tenth of a second.
class Gate {
public:
  explicit Gate(int descriptor) : descriptor_(descriptor) {
    constexpr int ATTEMPTS = 100;
    constexpr timespec PAUSE = {0, 1'000'000};
    for (int attempt = 0; attempt < ATTEMPTS && !held_; ++attempt) {
      held_ = flock(descriptor_, LOCK_EX | LOCK_NB) == 0;
      if (held_ || errno != EWOULDBLOCK) return;
      nanosleep(&PAUSE, nullptr);
    }
  }
  ~Gate() {
    const int error = errno;
    if (held_) flock(descriptor_, LOCK_UN);
    errno = error;
  }
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;

private:
  int descriptor_;
  bool held_ = false;
};

Step SetMark(int descriptor, Mark mark, bool readable) {
  if (readable) {
    struct flock lock = MakeLock(F_RDLCK, BeginOf(mark), 1);
    return fcntl(descriptor, F_OFD_SETLK, &lock) == 0 ? Step::Done : StepFromErrno();
  }
  for (off_t place = 1; place < MARKS_PER_KIND; ++place) {
    struct flock lock = MakeLock(F_WRLCK, BeginOf(mark) + place, 1);
    if (fcntl(descriptor, F_OFD_SETLK, &lock) == 0) return Step::Done;
    if (StepFromErrno() == Step::Unsupported) return Step::Unsupported;
  }
  return Step::Conflict;
}

Step CheckNoOther(int descriptor, Mark mark) {
  struct flock lock = MakeLock(F_WRLCK, BeginOf(mark), MARKS_PER_KIND);
  if (fcntl(descriptor, F_OFD_GETLK, &lock) != 0) return Step::Unsupported;
  const bool foreignReader = lock.l_type == F_RDLCK && lock.l_len != 1;
  const bool counts = !foreignReader || mark == Mark::Reads || mark == Mark::DeniesWriting;
  return lock.l_type != F_UNLCK && counts ? Step::Conflict : Step::Done;
}

struct MarkRule {
  bool applies;
  Mark mark;
  Mark against;
};

Step MarkAndCheck(int descriptor, const FileUse& use) {
  const bool deniesReading = use.sharing == FileSharing::None || use.sharing == FileSharing::Write;
  const bool deniesWriting = use.sharing == FileSharing::None || use.sharing == FileSharing::Read;
  const MarkRule rules[] = {{use.reads, Mark::Reads, Mark::DeniesReading},
                            {use.writes, Mark::Writes, Mark::DeniesWriting},
                            {deniesReading, Mark::DeniesReading, Mark::Reads},
                            {deniesWriting, Mark::DeniesWriting, Mark::Writes}};
  for (const MarkRule& rule : rules) {
    if (!rule.applies) continue;
    const Step step = SetMark(descriptor, rule.mark, use.reads);
    if (step != Step::Done) return step;
  }
  for (const MarkRule& rule : rules) {
    if (!rule.applies) continue;
    const Step step = CheckNoOther(descriptor, rule.against);
    if (step != Step::Done) return step;
  }
  return Step::Done;
}

}  // namespace

bool RegisterFileUse(int descriptor, const FileUse& use) {
  const Gate gate(descriptor);
  if (MarkAndCheck(descriptor, use) != Step::Conflict) return true;
  errno = EBUSY;
  return false;
}

bool IsFileUseAllowed(int descriptor, const FileUse& use) {
  const auto denied = [descriptor](Mark mark) {
    return CheckNoOther(descriptor, mark) == Step::Conflict;
  };
  const int error = errno;
  const bool refused =
      (use.reads && denied(Mark::DeniesReading)) || (use.writes && denied(Mark::DeniesWriting));
  errno = refused ? EBUSY : error;
  return !refused;
}

}  // namespace shr::platform
