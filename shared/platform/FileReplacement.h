// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The one way in which the library replaces files: the new content goes to a file beside the old
/// one and takes its place in one step.
///
/// Writers use shared/files/ReplacementFile.h, which gathers bytes and throws; the stores behind
/// configuration files and the registry use this class directly. Failures are told by false, and
/// `LastErrorText` (shared/platform/RawFile.h) then has the system's words for them.
///
///     platform::FileReplacement replacement;
///     const bool done = replacement.Begin(path) &&
///                       platform::WriteDescriptor(replacement.GetDescriptor(), data, size) &&
///                       replacement.Commit();
///
/// What stays of the old file:
/// - Linux: owner, group, mode, access lists and other extended attributes. An owner or group that
///   the process may not give keeps nothing open to others: a lost owner costs the bits that run a
///   program as somebody else, a lost group has no more rights than everybody.
/// - Windows: what `ReplaceFileW` keeps (access list, creation time, streams) and the attributes
///   hidden, system and the like; a file system that refuses gets a plain move.
///
/// A link stays a link, and the file that it names is replaced, or made when it is missing. A
/// further hard link keeps the old content. Until `Commit` nobody but the owner can read the new
/// content: its mode is 0600 on Linux, and on Windows the file is not shared.
///
/// The temporary file is called `~shared-HASH-...tmp`, with a hash of the target's name, so that
/// it fits wherever the target does. One left over by a killed process is removed by the next
/// writer of the same target; one of a living writer never is (a lock on it tells on Linux, process
/// and share mode on Windows). Two writers at once both succeed, and the later commit stays.
///
/// Threads: one thread an object.

#pragma once

#include <memory>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr::platform {

/// Who may use a file that was not there before.
enum class NewFileRights {
  Usual,      ///< whoever may use other new files of the process there
  OwnerOnly,  ///< on Linux the owner alone (0600)
};

/// A new content for a file.
class SHARED_API FileReplacement {
public:
  FileReplacement() noexcept;
  ~FileReplacement();
  FileReplacement(FileReplacement&& other) noexcept;
  FileReplacement& operator=(FileReplacement&& other) noexcept;

  /// Makes the temporary file for the target at `path`, which may be relative: the folder of the
  /// moment counts. Fails when the target is a folder, may not be written, is kept by another
  /// opener's share mode, or when no file can be made beside it. What was begun before is
  /// discarded.
  bool Begin(const GString& path, NewFileRights rights = NewFileRights::Usual);

  bool IsOpen() const noexcept { return state_ != nullptr; }

  /// Returns the descriptor to which the content goes, open for reading and writing; it belongs to
  /// this object. Requires: `IsOpen`.
  int GetDescriptor() const noexcept;

  /// Hands the content to the disk, gives it what stays of the old file and puts it in the place of
  /// the target. On failure the target is as it was; the object then can only be discarded. A
  /// target that is no file, such as a device, is refused here.
  bool Commit();

  /// Removes the temporary file.
  void Discard() noexcept;

private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace shr::platform
