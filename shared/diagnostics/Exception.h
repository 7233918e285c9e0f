// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The exception family of the library and the interface that presents an error to a user.
///
/// Every failure that the library reports to its caller is one of these values, thrown by value and
/// caught by reference. A handler for `Exception` catches them all:
///
///     try {
///       file.Open(path, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareRead);
///     } catch (const Exception& error) {
///       std::wcerr << error.GetDescription().c_str() << L'\n';
///     }
///
/// Threads: exceptions are plain values; each records the thread that constructed it.

#pragma once

#include <cstdint>

#include "shared/Export.h"
#include "shared/text/GString.h"

namespace shr {

/// A failure: what happened, and where in the library it was raised.
class SHARED_API Exception {
public:
  /// Records the calling thread beside the arguments.
  /// `module` is the raising component ("Shared" for this library), `sourceFile` a bare unit name
  /// such as "Archive", `line` the raiser's line, `description` the text for people.
  Exception(const GString& module, const GString& sourceFile, int line, const GString& description);

  /// Returns the operating system's id of the thread that constructed the exception.
  const std::uint32_t& GetThreadId() const { return threadId_; }
  const std::int32_t& GetSrcLine() const { return sourceLine_; }
  const GString& GetModule() const { return module_; }
  const GString& GetSrcFile() const { return sourceFile_; }
  const GString& GetDescription() const { return description_; }

private:
  std::uint32_t threadId_;
  std::int32_t sourceLine_;
  GString module_;
  GString sourceFile_;
  GString description_;
};

/// A state that the code treats as impossible. Raised through `ThrowInternalError` only.
class SHARED_API InternalErrorException : public Exception {
public:
  InternalErrorException(const GString& module, const GString& sourceFile, int line);
};

/// The user asked a long operation to stop.
class SHARED_API UserAbortException : public Exception {
public:
  UserAbortException(const GString& module, const GString& sourceFile, int line);
};

/// An inconsistency inside the polygon clipper; its module is "GPC Library".
class SHARED_API GPCException : public Exception {
public:
  GPCException(const GString& sourceFile, int line);
};

/// The application's way of showing an error to its user: a message box, a console line, a log
/// entry.
class SHARED_API IError {
public:
  virtual ~IError();

  /// Tells the presenter that a new operation begins, so that it may group or reset what it shows.
  /// The library never calls it.
  virtual void BeginOperation() = 0;

  /// Shows `message` together with its origin: hands the other overload the unchanged title and the
  /// text "message [Module module, File sourceFile, Line line]".
  virtual void ErrorMsg(const GString& title, const GString& message, const GString& module,
                        const GString& sourceFile, int line) const;

  /// Shows `text` under `title`.
  virtual void ErrorMsg(const GString& title, const GString& text) const = 0;
};

}  // namespace shr
