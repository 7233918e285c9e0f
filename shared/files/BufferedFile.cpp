// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/BufferedFile.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <limits>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/Paths.h"
#include "shared/platform/RawFile.h"
#include "shared/text/StringUtility.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"BufferedFile";
constexpr const wchar_t* MEMORY_FILE_NAME = L"memory file";
constexpr const wchar_t* OUT_OF_RANGE_TEXT = L"out of range";
constexpr std::uint32_t LINE_PIECE = 256;

bool FitsInt32(std::int64_t value) {
  return value >= std::numeric_limits<std::int32_t>::min() &&
         value <= std::numeric_limits<std::int32_t>::max();
}

/// Returns how many bytes `fgets` stored in a buffer that held nothing but line feeds before. The
/// first line feed is one that was read when the terminator follows it, else it is left over and
/// the terminator precedes it. So zero bytes of the text are counted too.
std::size_t CountStored(const char* buffer, std::size_t size) {
  const void* const feed = std::memchr(buffer, '\n', size);
  if (feed == nullptr) return size - 1;
  const std::size_t index = static_cast<std::size_t>(static_cast<const char*>(feed) - buffer);
  const bool wasRead = index + 1 < size && buffer[index + 1] == '\0';
  return wasRead ? index + 1 : index - 1;
}

/// An argument list that is ended on every way out.
class Arguments {
public:
  Arguments() = default;
  ~Arguments() { va_end(list); }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  va_list list;
};

/// Prints to a stream and returns the count, or a negative value on failure.
int PrintToStream(std::FILE* stream, const char* format, va_list arguments) {
  Arguments again;
  va_copy(again.list, arguments);
  std::string text;
  if (!FormatStringVA(text, format, arguments)) return std::vfprintf(stream, format, again.list);
  const bool written = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
  return written ? static_cast<int>(text.size()) : -1;
}

int PrintToMemory(CMemoryFile& memory, const char* format, va_list arguments) {
  std::string text;
  if (!FormatStringVA(text, format, arguments)) {
    ThrowErrorImpl(UNIT, __LINE__, L"Unable to write '%s'.\n%s", MEMORY_FILE_NAME,
                   OUT_OF_RANGE_TEXT);
  }
  memory.Write(text.data(), static_cast<std::uint32_t>(text.size()));
  return static_cast<int>(text.size());
}

}  // namespace

CBufferedFile::CBufferedFile(std::FILE* stream) : open_(stream != nullptr), stream_(stream) {}

CBufferedFile::CBufferedFile(const GString& path, const GString& mode, Sharing sharing,
                             bool removeWhenAbandoned) {
  Open(path, mode, sharing, removeWhenAbandoned);
}

CBufferedFile::~CBufferedFile() {
  if (open_) Abort(removeWhenAbandoned_);
}

CBufferedFile::CBufferedFile(CBufferedFile&& other) noexcept {
  Take(other);
}

CBufferedFile& CBufferedFile::operator=(CBufferedFile&& other) noexcept {
  if (this != &other) {
    if (open_) Abort(removeWhenAbandoned_);
    Take(other);
  }
  return *this;
}

void CBufferedFile::Take(CBufferedFile& other) noexcept {
  open_ = other.open_;
  removeWhenAbandoned_ = other.removeWhenAbandoned_;
  isReadable_ = other.isReadable_;
  direction_ = other.direction_;
  path_.swap(other.path_);
  fullPath_.swap(other.fullPath_);
  stream_ = std::exchange(other.stream_, nullptr);
  memory_ = std::move(other.memory_);
  other.Forget();
}

void CBufferedFile::Forget() noexcept {
  open_ = false;
  removeWhenAbandoned_ = false;
  isReadable_ = true;
  direction_ = Direction::None;
  stream_ = nullptr;
  memory_.reset();
  path_.clear();
  fullPath_.clear();
}

void CBufferedFile::CheckOpenArguments(const GString& path, const GString& mode, Sharing sharing,
                                       int line) const {
  const bool known = sharing >= ShareNone && sharing <= ShareAll;
  if (path.empty() || mode.empty() || !HoldsNothing() || !known) {
    ThrowInternalError(SHARED_MODULE, UNIT, line);
  }
}

bool CBufferedFile::TryOpen(const GString& path, const GString& mode, Sharing sharing,
                            bool removeWhenAbandoned) {
  platform::ClearLastError();
  stream_ = platform::OpenStream(path, mode, static_cast<platform::FileSharing>(sharing));
  if (stream_ == nullptr) return false;
  open_ = true;
  removeWhenAbandoned_ = removeWhenAbandoned;
  isReadable_ = mode[0] == L'r' || mode.find(L'+') != GString::npos;
  direction_ = Direction::None;
  path_ = path;
  fullPath_ = platform::AnchorPath(path);
  return true;
}

void CBufferedFile::Open(const GString& path, const GString& mode, Sharing sharing,
                         bool removeWhenAbandoned) {
  CheckOpenArguments(path, mode, sharing, __LINE__);
  if (TryOpen(path, mode, sharing, removeWhenAbandoned)) return;
  const GString reason = platform::LastErrorText();
  ThrowErrorImpl(UNIT, __LINE__, L"Unable to open '%s'.\n%s", path.c_str(), reason.c_str());
}

bool CBufferedFile::OpenNoThrow(const GString& path, const GString& mode, Sharing sharing,
                                bool removeWhenAbandoned) {
  CheckOpenArguments(path, mode, sharing, __LINE__);
  return TryOpen(path, mode, sharing, removeWhenAbandoned);
}

void CBufferedFile::OpenMemory(std::unique_ptr<CMemoryFile> memory) {
  if (!HoldsNothing()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  memory_ = std::move(memory);
  path_.clear();
  removeWhenAbandoned_ = false;
  open_ = true;
}

void CBufferedFile::Open() {
  OpenMemory(std::make_unique<CMemoryFile>());
}

void CBufferedFile::Open(void* buffer, std::uint32_t size) {
  OpenMemory(std::make_unique<CMemoryFile>(static_cast<unsigned char*>(buffer), size));
}

void CBufferedFile::Close() {
  std::FILE* const stream = stream_;
  const GString path = path_;
  Forget();
  if (stream == nullptr) return;
  platform::ClearLastError();
  if (std::fclose(stream) == 0) return;
  const GString reason = platform::LastErrorText();
  ThrowErrorImpl(UNIT, __LINE__, L"Unable to close '%s'.\n%s", path.c_str(), reason.c_str());
}

void CBufferedFile::Abort(bool remove) noexcept {
  if (stream_ != nullptr) std::fclose(stream_);
  if (remove && !path_.empty()) platform::RemoveFile(fullPath_);
  Forget();
}

void CBufferedFile::ThrowStreamError(int line, const wchar_t* format) {
  const GString reason = platform::LastErrorText();
  if (stream_ != nullptr) std::clearerr(stream_);
  ThrowErrorImpl(UNIT, line, format, path_.c_str(), reason.c_str());
}

/// Lets a stream change between reading and writing, between which the standard asks for a
/// positioning. Streams without positions have nothing to do then.
void CBufferedFile::TurnTo(Direction direction) {
  if (direction == direction_) return;
  if (direction == Direction::Reading && !isReadable_) {
    platform::SetAccessError();
    ThrowStreamError(__LINE__, L"Unable to read '%s'.\n%s");
  }
  if (direction_ != Direction::None) {
    platform::SeekStream(stream_, 0, platform::FileOrigin::Current);
  }
  direction_ = direction;
}

/// Throws when the last reading call ended by a failure and not by the end of the file. The end,
/// which some runtimes remember in the stream and some in the descriptor, is forgotten: what others
/// append is there for the next call.
void CBufferedFile::CheckRead(int line) {
  if (std::ferror(stream_) != 0) ThrowStreamError(line, L"Unable to read '%s'.\n%s");
  if (std::feof(stream_) == 0) return;
  std::clearerr(stream_);
  platform::SeekStream(stream_, 0, platform::FileOrigin::Current);
}

void CBufferedFile::Flush() {
  if (stream_ == nullptr) return;
  platform::ClearLastError();
  // Input streams have nothing to flush, and flushing them would drop what was read ahead.
  if (direction_ == Direction::Reading) return;
  if (std::fflush(stream_) != 0) ThrowStreamError(__LINE__, L"Unable to write '%s'.\n%s");
}

int CBufferedFile::Getc() {
  if (memory_) return memory_->Getc();
  if (stream_ == nullptr) return -1;
  TurnTo(Direction::Reading);
  const int c = std::getc(stream_);
  if (c == EOF) CheckRead(__LINE__);
  return c;
}

int CBufferedFile::UnGetc(int c) {
  if (memory_) return memory_->UnGetc(c);
  if (stream_ == nullptr) return -1;
  TurnTo(Direction::Reading);
  return std::ungetc(c, stream_);
}

int CBufferedFile::Putc(int c) {
  if (memory_) return memory_->Putc(c);
  if (stream_ == nullptr) return -1;
  TurnTo(Direction::Writing);
  const int written = std::putc(c, stream_);
  if (written == EOF) ThrowStreamError(__LINE__, L"Unable to write '%s'.\n%s");
  return written;
}

std::uint32_t CBufferedFile::Read(void* buffer, std::uint32_t count) {
  if (buffer == nullptr) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (count == 0 || HoldsNothing()) return 0;
  if (memory_) return memory_->Read(buffer, count);
  TurnTo(Direction::Reading);
  const std::size_t got = std::fread(buffer, 1, count, stream_);
  if (got < count) CheckRead(__LINE__);
  return static_cast<std::uint32_t>(got);
}

void CBufferedFile::ReadN(void* buffer, std::uint32_t count) {
  if (Read(buffer, count) == count) return;
  ThrowErrorImpl(UNIT, __LINE__, L"Unexpected end of file reading '%s'.",
                 memory_ ? MEMORY_FILE_NAME : path_.c_str());
}

void CBufferedFile::Write(const void* buffer, std::uint32_t count) {
  if (HoldsNothing()) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (count == 0) return;
  if (buffer == nullptr) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (memory_) return memory_->Write(buffer, count);
  TurnTo(Direction::Writing);
  if (std::fwrite(buffer, 1, count, stream_) != count) {
    ThrowStreamError(__LINE__, L"Unable to write '%s'.\n%s");
  }
}

char* CBufferedFile::ReadString(char* buffer, std::uint32_t size) {
  if (memory_) return memory_->ReadString(buffer, size);
  if (buffer == nullptr || size == 0 || stream_ == nullptr) return nullptr;
  buffer[0] = '\0';
  if (size == 1) return buffer;
  TurnTo(Direction::Reading);
  constexpr std::uint32_t LIMIT = std::numeric_limits<std::int32_t>::max();
  char* const result = std::fgets(buffer, static_cast<int>(std::min(size, LIMIT)), stream_);
  CheckRead(__LINE__);
  return result;
}

/// Appends the next piece of the line; returns false when there was none.
bool CBufferedFile::AppendPiece(std::string& line) {
  char buffer[LINE_PIECE];
  std::memset(buffer, '\n', sizeof buffer);
  const std::int64_t before = memory_ ? memory_->GetPosition() : 0;
  if (ReadString(buffer, LINE_PIECE) == nullptr) return false;
  const std::size_t stored = memory_ ? static_cast<std::size_t>(memory_->GetPosition() - before)
                                     : CountStored(buffer, sizeof buffer);
  line.append(buffer, stored);
  return true;
}

bool CBufferedFile::ReadString(std::string& line) {
  line.clear();
  bool read = false;
  for (;;) {
    const std::size_t before = line.size();
    if (!AppendPiece(line)) break;
    read = true;
    if (line.size() - before < LINE_PIECE - 1 || line.back() == '\n') break;
  }
  RemoveLineEnd(line);
  return read;
}

void CBufferedFile::RemoveLineEnd(std::string& line) const {
  if (line.empty() || line.back() != '\n') return;
  line.pop_back();
  if (!line.empty() && line.back() == '\r') line.pop_back();
}

void CBufferedFile::WriteString(const char* text) {
  if (text == nullptr) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  constexpr std::size_t LIMIT = std::numeric_limits<std::uint32_t>::max();
  for (std::size_t left = std::strlen(text);;) {
    const std::uint32_t piece = static_cast<std::uint32_t>(std::min(left, LIMIT));
    Write(text, piece);
    text += piece;
    left -= piece;
    if (left == 0) return;
  }
}

int CBufferedFile::Printf(const char* format, ...) {
  if (format == nullptr) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (HoldsNothing()) return -1;
  if (stream_ != nullptr) TurnTo(Direction::Writing);
  Arguments arguments;
  va_start(arguments.list, format);
  const int count = memory_ ? PrintToMemory(*memory_, format, arguments.list)
                            : PrintToStream(stream_, format, arguments.list);
  if (count < 0) ThrowStreamError(__LINE__, L"Unable to write '%s'.\n%s");
  return count;
}

void CBufferedFile::CheckFormat(const char* format, std::initializer_list<FormatKind> arguments) {
  if (format == nullptr || FormatTakes(format, FormatKind::NarrowText, arguments)) return;
  ThrowErrorImpl(UNIT, __LINE__, INVALID_PARAMETER_TEXT);
}

std::int64_t CBufferedFile::Seek(std::int64_t offset, Origin origin) {
  if (HoldsNothing()) return -1;
  if (!FitsInt32(offset)) {
    ThrowErrorImpl(UNIT, __LINE__, L"Unable to seek '%s'.\n%s",
                   memory_ ? MEMORY_FILE_NAME : path_.c_str(), OUT_OF_RANGE_TEXT);
  }
  if (memory_) {
    return memory_->Seek(static_cast<int>(offset), static_cast<CMemoryFile::Origin>(origin));
  }
  if (origin < OriginBegin || origin > OriginEnd) {
    ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  }
  platform::ClearLastError();
  if (!platform::SeekStream(stream_, offset, static_cast<platform::FileOrigin>(origin))) {
    ThrowStreamError(__LINE__, L"Unable to seek '%s'.\n%s");
  }
  direction_ = Direction::None;
  const std::int64_t position = platform::TellStream(stream_);
  return FitsInt32(position) ? position : -1;
}

std::int64_t CBufferedFile::GetPosition() const {
  if (memory_) return memory_->GetPosition();
  if (stream_ == nullptr) return -1;
  const std::int64_t position = platform::TellStream(stream_);
  if (position >= 0) return position;
  const GString reason = platform::LastErrorText();
  ThrowErrorImpl(UNIT, __LINE__, L"Unable to seek '%s'.\n%s", path_.c_str(), reason.c_str());
}

std::int64_t CBufferedFile::GetLength() {
  if (memory_) return memory_->GetLength();
  if (stream_ == nullptr) return -1;
  const std::int64_t position = GetPosition();
  const bool atEnd = platform::SeekStream(stream_, 0, platform::FileOrigin::End);
  const std::int64_t length = atEnd ? platform::TellStream(stream_) : -1;
  if (length < 0) ThrowStreamError(__LINE__, L"Unable to seek '%s'.\n%s");
  if (!platform::SeekStream(stream_, position, platform::FileOrigin::Begin)) {
    ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  }
  direction_ = Direction::None;
  return length;
}

bool CBufferedFile::EndOfFile() {
  if (memory_) return memory_->EndOfFile();
  if (stream_ == nullptr) return true;
  const int next = Getc();
  if (next == EOF) return true;
  std::ungetc(next, stream_);
  return false;
}

unsigned char* CBufferedFile::GetBuffer() const noexcept {
  return memory_ ? memory_->GetBuffer() : nullptr;
}

void CBufferedFile::SetFilePath(const wchar_t* path) {
  path_ = path;
  fullPath_ = platform::AnchorPath(path_);
}

}  // namespace shr
