// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/diagnostics/Logger.h"

#include <cstdarg>
#include <exception>
#include <mutex>
#include <string_view>

#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/ForkSafeMutex.h"
#include "shared/platform/Paths.h"
#include "shared/platform/RawFile.h"
#include "shared/platform/TextMode.h"
#include "shared/platform/Threads.h"
#include "shared/text/Utf.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"Logger";
constexpr const wchar_t* OPEN_ERROR = L"Unable to open '%s'.\n%s";
constexpr const wchar_t* WRITE_ERROR = L"Unable to write '%s'.\n%s";

// Lines that the errors of this unit report.
constexpr int LINE_EMPTY_PATH = 85;
constexpr int LINE_CREATE_FAILED = 216;
constexpr int LINE_OPEN_FAILED = 234;
constexpr int LINE_WRITE_FAILED = 250;

constexpr std::string_view UTF16_MARK = "\xFF\xFE";

struct LoggerTag;

/// The critical section of all loggers. It outlives static destructors that still log, and a child
/// of fork finds it free.
std::recursive_mutex& GetMutex() {
  static platform::ForkSafeMutex<std::recursive_mutex, LoggerTag> mutex;
  return mutex.Get();
}

using Lock = std::lock_guard<std::recursive_mutex>;

/// Returns `line` and a line end as UTF-16LE. The bytes are in `room`, which grows as needed and
/// keeps its size, so that nothing is filled with zeros first.
std::string_view EncodeLine(std::wstring_view line, std::string& room) {
  const std::wstring_view lineEnd = platform::TextModeTranslatesLineEnds() ? L"\r\n" : L"\n";
  const std::size_t most = (line.size() + lineEnd.size()) * sizeof(wchar_t);
  if (room.size() < most) room.resize(most);
  std::size_t size = WideToUtf16(line, ByteOrder::LittleEndian, room.data());
  size += WideToUtf16(lineEnd, ByteOrder::LittleEndian, room.data() + size);
  return std::string_view(room).substr(0, size);
}

/// Returns whether lines can be appended to what is at `path`: whatever is no file, a file without
/// content, and UTF-16 text with its mark.
bool IsAppendable(const GString& path) {
  if (platform::GetFileKind(platform::ResolveLinks(path)) != platform::FileKind::Regular)
    return true;
  platform::FileOpenOptions options;
  options.read = true;
  const int file = platform::OpenDescriptor(path, options);
  if (file == platform::NO_DESCRIPTOR) return true;  // opening it to write tells why
  char head[UTF16_MARK.size()] = {};
  const std::ptrdiff_t got = platform::ReadDescriptor(file, head, sizeof head);
  platform::CloseDescriptor(file);
  return got <= 0 || std::string_view(head, static_cast<std::size_t>(got)) == UTF16_MARK;
}

/// Returns the path of a log beside one that is not UTF-16: "run.utf16.log", "run.utf16-2.log" ...
GString PathBeside(const GString& path, int number) {
  std::size_t name = path.size();
  while (name > 0 && !platform::IsPathSeparator(path[name - 1])) --name;
  std::size_t dot = path.String().rfind(L'.');
  if (dot == std::wstring::npos || dot <= name) dot = path.size();
  const GString mark =
      number == 1 ? GString(L".utf16") : GString(L".utf16-" + std::to_wstring(number));
  return path.substr(0, dot) + mark + path.substr(dot);
}

/// Returns the path of the log to which lines for `path` can be appended.
GString FindAppendable(const GString& path) {
  constexpr int MOST_FILES = 100;
  GString found = path;
  for (int number = 1; number <= MOST_FILES && !IsAppendable(found); ++number) {
    found = PathBeside(path, number);
  }
  return found;
}

GString FormatPrefix() {
  GString prefix;
  prefix.FormatString(L"[%x] ", platform::CurrentThreadId());
  return prefix;
}

}  // namespace

CLogger::CLogger(const GString& path, int typeMask, bool enabled)
    : enabled_(enabled), type_(typeMask), path_(path), file_(platform::NO_DESCRIPTOR) {
  UpdatePassing();
}

CLogger::~CLogger() {
  CloseFile();
}

void CLogger::SetOutputFile(const GString& path, bool append) {
  if (path.empty()) ThrowInternalError(SHARED_MODULE, UNIT, LINE_EMPTY_PATH);
  const Lock lock(GetMutex());
  CloseFile();
  path_ = path;
  append_ = append;
}

void CLogger::Enable(bool enable) noexcept {
  enabled_ = enable;
  UpdatePassing();
}

void CLogger::SetType(int typeMask) noexcept {
  type_ = typeMask;
  UpdatePassing();
}

void CLogger::UpdatePassing() noexcept {
  passing_ = enabled_ ? type_.load() : 0;
}

void CLogger::SetOutputCallback(OutputCallback callback, void* user) {
  const Lock lock(GetMutex());
  callback_ = callback;
  callbackUser_ = user;
}

bool CLogger::SetRemoteLogger(const GString& prefix, const GString& host, int port,
                              unsigned long timeOutMilliseconds) {
  // Names are resolved outside the critical section, so that other threads may go on logging.
  auto remote = std::make_unique<CRemoteLogger>(host, port, timeOutMilliseconds);
  const bool usable = remote->IsEnabled();
  const Lock lock(GetMutex());
  remotePrefix_ = prefix;
  remote_ = std::move(remote);
  return usable;
}

void CLogger::EnableRemoteLogger(bool enable) {
  const Lock lock(GetMutex());
  if (remote_ != nullptr) remote_->Enable(enable);
}

bool CLogger::IsRemoteLoggerEnabled() const {
  const Lock lock(GetMutex());
  return remote_ != nullptr && remote_->IsEnabled();
}

void CLogger::Send(int kind, const GString& line) {
  const Lock lock(GetMutex());
  if (!IsEnabled()) return;
  if (file_ == platform::NO_DESCRIPTOR && !path_.empty()) OpenOutputFile();
  const GString prefixed = threadIdPrefix_ ? FormatPrefix() + line : GString();
  const GString& written = threadIdPrefix_ ? prefixed : line;
  if (file_ != platform::NO_DESCRIPTOR) {
    WriteToFile(written);
  } else {
    buffer_ += written;
    buffer_ += L'\n';
  }
  lastLineEmpty_ = line.empty();
  if ((kind & LogRemote) != 0 && IsRemoteLoggerEnabled()) remote_->Send(remotePrefix_ + written);
  CallCallback(kind, written);
}

/// Hands a line to the callback. It may log; lines that it sends while it is handed a line of its
/// own are only written, so that it never goes on without end.
void CLogger::CallCallback(int kind, const GString& line) {
  constexpr int MOST_CALLS_WITHIN_CALLS = 2;
  if (callback_ == nullptr || callbackDepth_ == MOST_CALLS_WITHIN_CALLS) return;
  struct Depth {
    explicit Depth(int& depth) : depth_(++depth) {}
    ~Depth() { --depth_; }
    int& depth_;
  };
  const Depth depth(callbackDepth_);
  callback_(kind, line, callbackUser_);
}

GString CLogger::GetOutputFile() const {
  const Lock lock(GetMutex());
  return file_ == platform::NO_DESCRIPTOR ? path_ : openPath_;
}

void CLogger::SendFormatted(int kind, const wchar_t* format, ...) {
  GString line;
  va_list arguments;
  va_start(arguments, format);
  const bool formatted = line.FormatStringVA(format, arguments);
  va_end(arguments);
  Send(kind, formatted ? line : GString(format));
}

void CLogger::Separator(int kind, const GString& title) {
  const Lock lock(GetMutex());
  if (!lastLineEmpty_) Send(kind, GString());
  if (title.empty()) return;
  Send(kind, title);
  Send(kind, GString(title.size(), L'-'));
}

GString CLogger::GetBuffer() const {
  const Lock lock(GetMutex());
  return buffer_;
}

void CLogger::EmptyBuffer() {
  const Lock lock(GetMutex());
  buffer_.clear();
}

void CLogger::OpenOutputFile() {
  const bool afresh = !append_;
  const int line = afresh ? LINE_CREATE_FAILED : LINE_OPEN_FAILED;
  openPath_ = afresh ? path_ : FindAppendable(path_);
  // Only a file is deleted. A device, a pipe and a link are there for a reason.
  if (afresh && platform::GetFileKind(path_) == platform::FileKind::Regular) {
    platform::RemoveFile(path_);
  }
  platform::FileOpenOptions options;
  options.write = options.append = options.create = true;
  options.truncate = afresh;
  file_ = platform::OpenDescriptor(openPath_, options);
  if (file_ == platform::NO_DESCRIPTOR) Fail(line, OPEN_ERROR, platform::LastErrorText());
  std::string head;
  if (afresh || platform::GetDescriptorLength(file_) == 0) head = UTF16_MARK;
  if (afresh) head += EncodeLine(std::wstring_view(), room_);
  if (!platform::WriteDescriptor(file_, head.data(), head.size())) {
    Fail(line, OPEN_ERROR, platform::LastErrorText());
  }
  // What follows is appended, also when the same file is opened again.
  append_ = true;
  DropHalfUnit();
  if (openPath_ != path_) WriteToFile(L"'" + path_ + L"' is not UTF-16; its log goes on here.");
}

void CLogger::Fail(int line, const wchar_t* format, const GString& reason) {
  CloseFile();
  Enable(false);
  ThrowErrorImpl(UNIT, line, format, openPath_.c_str(), reason.c_str());
}

void CLogger::CloseFile() noexcept {
  if (file_ == platform::NO_DESCRIPTOR) return;
  platform::CloseDescriptor(file_);
  file_ = platform::NO_DESCRIPTOR;
}

void CLogger::WriteToFile(const std::wstring& line) {
  const std::string_view bytes = EncodeLine(line, room_);
  if (platform::WriteDescriptor(file_, bytes.data(), bytes.size())) return;
  const GString reason = platform::LastErrorText();
  DropHalfUnit();
  Fail(LINE_WRITE_FAILED, WRITE_ERROR, reason);
}

/// Half a unit at the end would shift everything that is appended later.
void CLogger::DropHalfUnit() noexcept {
  const std::int64_t length = platform::GetDescriptorLength(file_);
  if (length > 0 && length % 2 != 0) platform::SetDescriptorLength(file_, length - 1);
}

CLogger& GetProcessLogger() {
  static auto* const logger = new CLogger;
  return *logger;
}

ScopedLogMessage::ScopedLogMessage(const wchar_t* text)
    : exitMessage_(text), exceptionCount_(std::uncaught_exceptions()) {
  g_Logger.SendVA(LogTrace, L"Enter %s", text);
}

ScopedLogMessage::~ScopedLogMessage() {
  if (std::uncaught_exceptions() > exceptionCount_) return;
  try {
    g_Logger.SendVA(LogTrace, L"Exit %s", exitMessage_.c_str());
  } catch (...) {
    // The logger has disabled itself; a destructor has nobody to tell.
  }
}

}  // namespace shr
