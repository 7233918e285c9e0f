// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/diagnostics/Logger.h"

#include <cstdarg>
#include <exception>
#include <mutex>
#include <string_view>

#include "shared/diagnostics/ThrowError.h"
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

/// The critical section of all loggers. It outlives static destructors that still log.
std::recursive_mutex& GetMutex() {
  static auto* const mutex = new std::recursive_mutex;
  return *mutex;
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
  if (callback_ != nullptr) callback_(kind, written, callbackUser_);
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
  if (!append_) CreateEmptyFile();
  platform::FileOpenOptions options;
  options.write = true;
  options.append = true;
  options.create = true;
  file_ = platform::OpenDescriptor(path_, options);
  if (file_ == platform::NO_DESCRIPTOR)
    Fail(LINE_OPEN_FAILED, OPEN_ERROR, platform::LastErrorText());
  if (platform::GetDescriptorLength(file_) == 0 &&
      !platform::WriteDescriptor(file_, UTF16_MARK.data(), UTF16_MARK.size())) {
    Fail(LINE_OPEN_FAILED, OPEN_ERROR, platform::LastErrorText());
  }
  // What follows is appended, also when the same file is opened again.
  append_ = true;
}

void CLogger::CreateEmptyFile() {
  platform::RemoveFile(path_);
  platform::FileOpenOptions options;
  options.write = true;
  options.create = true;
  options.truncate = true;
  const int file = platform::OpenDescriptor(path_, options);
  if (file == platform::NO_DESCRIPTOR)
    Fail(LINE_CREATE_FAILED, OPEN_ERROR, platform::LastErrorText());
  std::string head(UTF16_MARK);
  head += EncodeLine(std::wstring_view(), room_);
  const bool written = platform::WriteDescriptor(file, head.data(), head.size());
  const GString reason = platform::LastErrorText();
  if (!platform::CloseDescriptor(file) && written)
    Fail(LINE_CREATE_FAILED, OPEN_ERROR, platform::LastErrorText());
  if (written) return;
  Enable(false);
  ThrowErrorImpl(UNIT, LINE_CREATE_FAILED, OPEN_ERROR, path_.c_str(), reason.c_str());
}

void CLogger::Fail(int line, const wchar_t* format, const GString& reason) {
  CloseFile();
  Enable(false);
  ThrowErrorImpl(UNIT, line, format, path_.c_str(), reason.c_str());
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
