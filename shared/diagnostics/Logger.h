// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CLogger` writes diagnostic lines to a UTF-16LE file, or to memory while no file is set, and
/// may hand them to a remote collector and to a callback. `g_Logger` is the process's own.
///
/// The file begins with the byte-order mark FF FE and an empty line; lines end as the platform's
/// text files do. Every line is handed to the system at once, so a crash loses none.
///
/// Only a plain file is deleted when a log begins afresh: a link stays and the file behind it is
/// emptied; a device or a pipe is written as it is. A file that is not UTF-16 is never appended to:
/// the log goes on beside it ("run.utf16.log" for "run.log"), with a line that says so.
///
///     g_Logger.SetOutputFile(L"run.log", false);
///     g_Logger.SendVA(LogInfo, L"%d points read from '%s'", count, path.c_str());
///     ScopedLogMessage scope(L"Import");   // "Enter Import" ... "Exit Import"
///
/// Threads: lines may be sent from any thread; one critical section of the process serializes the
/// lines of all loggers, so they never interleave. Set a logger up before other threads use it.
/// A child of fork may log at once, whatever the threads of its parent did, but not when a callback
/// forked it: its lines go to the same file, whole, between those of the parent. Where no line has
/// opened the file yet, parent and child both begin it afresh, so send one before. The child has a
/// copy of the lines that were collected in memory.

#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <type_traits>

#include "shared/Export.h"
#include "shared/diagnostics/RemoteLogger.h"
#include "shared/text/GString.h"
#include "shared/text/PrintfArguments.h"

struct _EXCEPTION_POINTERS;

namespace shr {

/// Kinds of lines, bits of a mask. A line carries one of the first four and perhaps `LogRemote`.
enum LogKind : int {
  LogError = 1,     ///< crash reports and errors
  LogWarning = 2,   ///< problems that the program got over
  LogInfo = 4,      ///< configuration, time stamps
  LogTrace = 8,     ///< traces for developers
  LogRemote = 16,   ///< send the line to the remote logger, too
  LogAllKinds = 31  ///< all of the above
};

/// A destination of diagnostic lines.
class SHARED_API CLogger {
public:
  /// Called with every line that is written: its kind, its text and the user data given with it.
  using OutputCallback = void (*)(int kind, const GString& line, void* user);

  /// An empty path collects the lines in memory; `typeMask` holds the kinds that `SendVA` lets
  /// through.
  explicit CLogger(const GString& path = GString(), int typeMask = LogAllKinds,
                   bool enabled = true);
  ~CLogger();
  CLogger(const CLogger&) = delete;
  CLogger& operator=(const CLogger&) = delete;

  // Settings.

  /// Sets the log file; an open one is closed. The next line opens it: with `append` behind its
  /// content, otherwise afresh. Errors: an internal error for an empty path.
  void SetOutputFile(const GString& path, bool append);

  /// A logger that cannot open or write its file disables itself and stays so until enabled here.
  void Enable(bool enable) noexcept;
  bool IsEnabled() const noexcept { return enabled_.load(std::memory_order_relaxed); }
  /// Puts the calling thread's id in front of each line, as in "[1a2b] text".
  void EnableThreadIdPrefix(bool enable) noexcept { threadIdPrefix_ = enable; }
  bool IsThreadIdPrefixEnabled() const noexcept { return threadIdPrefix_; }
  /// Sets the kinds that `SendVA` lets through.
  void SetType(int typeMask) noexcept;
  int GetType() const noexcept { return type_.load(std::memory_order_relaxed); }
  /// Returns the path of the open file, else the one that was set. It is another one than was set
  /// when that file is not UTF-16.
  GString GetOutputFile() const;

  /// A null callback switches it off. It runs inside the critical section and may log: it is handed
  /// the lines that it sends, but not those that it sends in turn meanwhile, which are only
  /// written.
  void SetOutputCallback(OutputCallback callback, void* user);

  /// Replaces the remote logger by one for the destination; `prefix` goes in front of each line
  /// sent there. Returns true when the new one can send.
  bool SetRemoteLogger(const GString& prefix, const GString& host, int port,
                       unsigned long timeOutMilliseconds);
  void EnableRemoteLogger(bool enable);
  bool IsRemoteLoggerEnabled() const;

  // Lines.

  /// Writes one line when the logger is enabled, whatever its kind.
  /// Errors: an `Exception` "Unable to open '%s'.\n%s" or "Unable to write '%s'.\n%s" of unit
  /// "Logger", behind which the logger is disabled.
  void Send(int kind, const GString& line);

  /// Formats like `GString::FormatString` and writes the line when the logger is enabled and
  /// `kind` shares a bit with the mask; otherwise costs a load and a branch. A text that the
  /// formatter refuses is replaced by the bare format.
  template <typename... Arguments>
  requires(std::is_scalar_v<Arguments>&&...) &&
      (!FormatObjects<Arguments...>)void SendVA(int kind, const wchar_t* format,
                                                Arguments... arguments) {
    if ((passing_.load(std::memory_order_relaxed) & kind) == 0) return;
    SendFormatted(kind, format, arguments...);
  }
  template <typename... Arguments>
  requires FormatObjects<Arguments...>
  void SendVA(int kind, const wchar_t* format, const Arguments&... arguments) {
    if ((passing_.load(std::memory_order_relaxed) & kind) == 0) return;
    if (!FormatTakes(format, FormatKind::WideText, {FormatKindOf<Arguments>...})) {
      Send(kind, GString(format));
    } else {
      SendFormatted(kind, format, CArgument(ToFormatArgument(arguments))...);
    }
  }

  /// Writes an empty line unless the last one was empty, then, for a title that is not empty, the
  /// title and a line of as many dashes.
  void Separator(int kind, const GString& title);

  /// Returns the lines collected while no file was set, a newline behind each.
  GString GetBuffer() const;
  void EmptyBuffer();

  // Reports, each doing nothing while the logger is disabled. What the platform lacks is said in
  // the words of the block.

  void Time();
  void OSVersion();
  void VideoInfo();
  void Processor();
  void Coprocessor();
  void Memory();
  void EnumModules();
  /// Writes the time and then the six blocks.
  void LogAllConfigInfo();
  /// Writes a crash report for the operating system's record of an exception; null does nothing.
  void Exception(const _EXCEPTION_POINTERS* record);

private:
  void SendFormatted(int kind, const wchar_t* format, ...);
  void UpdatePassing() noexcept;
  void OpenOutputFile();
  [[noreturn]] void Fail(int line, const wchar_t* format, const GString& reason);
  void CallCallback(int kind, const GString& line);
  void CloseFile() noexcept;
  void WriteToFile(const std::wstring& line);
  void DropHalfUnit() noexcept;

  bool lastLineEmpty_ = true;
  std::atomic<bool> enabled_;
  bool append_ = false;
  bool threadIdPrefix_ = false;
  std::atomic<int> type_;
  std::atomic<int> passing_{0};  ///< the mask while enabled, 0 otherwise
  GString buffer_;
  GString path_;
  GString openPath_;  ///< of the open file
  int file_;
  int callbackDepth_ = 0;
  OutputCallback callback_ = nullptr;
  void* callbackUser_ = nullptr;
  GString remotePrefix_;
  std::unique_ptr<CRemoteLogger> remote_;
  std::string room_;  ///< for the bytes of the line being written
};

/// Returns the logger of the process: enabled, of all kinds, without a file. It is made on first
/// use and never destroyed, so static constructors and destructors may log.
SHARED_API CLogger& GetProcessLogger();

/// The logger of the process.
inline CLogger& g_Logger = GetProcessLogger();

/// Writes "Enter text" and "Exit text" of kind `LogTrace` to `g_Logger` around a scope. While an
/// exception leaves the scope no exit line is written.
class SHARED_API ScopedLogMessage {
public:
  explicit ScopedLogMessage(const wchar_t* text);
  ~ScopedLogMessage();
  ScopedLogMessage(const ScopedLogMessage&) = delete;
  ScopedLogMessage& operator=(const ScopedLogMessage&) = delete;

  /// Replaces the text used at exit.
  void SetExitMessage(const wchar_t* text) { exitMessage_ = text; }

private:
  GString exitMessage_;
  int exceptionCount_;
};

}  // namespace shr
