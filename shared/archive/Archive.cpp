// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// The block. When storing, [begin_, next_) waits to be written and [next_, end_) is room; when
// loading, [next_, end_) was read ahead. A memory file that is loaded is one block as a whole. With
// no file all four pointers are null, so that the short way of every transfer ends in the long one,
// which reports it.
//
// The sum is taken late: `sum_` covers what lies before `summed_`, and the rest of the block is
// added when the block changes or someone asks. Adding up 64 KiB at once costs a fraction of adding
// up every value as it passes.
//
// A write that failed may have reached the file in part. The block is kept, and before it is tried
// again the file is put back to the position of the block.
//
// A file on disk is written aside (`replacement_`) and there is no `file_` then. Two notes decide
// whether it may take the place of the old one: `isCut_`, something was not stored as a whole,
// which nothing mends; and `hasFailed_`, a write failed, which the caller may have tried again, so
// that only the destructor heeds it.

#include "shared/archive/Archive.h"

#include <algorithm>
#include <bit>
#include <cwchar>
#include <exception>
#include <limits>
#include <string_view>
#include <utility>

#include "shared/archive/ArchiveObjects.h"
#include "shared/archive/ByteSum.h"
#include "shared/color/Color4b.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/files/File.h"
#include "shared/files/Path.h"
#include "shared/files/ReplacementFile.h"
#include "shared/geometry/Box3.h"
#include "shared/geometry/Mat4.h"
#include "shared/geometry/Quat4.h"
#include "shared/platform/Paths.h"
#include "shared/text/GString.h"
#include "shared/text/Utf.h"

namespace shr {
namespace {

static_assert(std::endian::native == std::endian::little, "values are stored as they lie");
static_assert(sizeof(int) == 4 && sizeof(short) == 2 && sizeof(float) == 4 && sizeof(double) == 8);
static_assert(sizeof(Vec2<float>) == 8 && sizeof(Vec2<double>) == 16);
static_assert(sizeof(Box2<float>) == 16 && sizeof(Box2<double>) == 32);
static_assert(sizeof(Vec3<int>) == 12 && sizeof(Vec3<double>) == 24);
static_assert(sizeof(Quat4<double>) == 32 && sizeof(Box3<double>) == 48);

constexpr const wchar_t* UNIT = L"Archive";

// Lines by which users and their support know these errors.
constexpr int LINE_EMPTY_PATH = 135;
constexpr int LINE_ALREADY_OPEN = 138;
constexpr int LINE_CLOSE_WITHOUT_FILE = 155;
constexpr int LINE_DAMAGED = 231;
constexpr int LINE_READ_WITHOUT_FILE = 241;
constexpr int LINE_SHORT_READ = 245;
constexpr int LINE_WRITE_WITHOUT_FILE = 257;
constexpr int LINE_TEXT_TOO_LONG = 671;

constexpr std::size_t BLOCK_SIZE = 64 * 1024;
/// From this size on bytes are added up while they are copied, below it later with others.
constexpr std::size_t LEAST_SUMMED_AT_ONCE = 1024;
/// The most that one call reads past the block.
constexpr std::size_t READ_SIZE = 256 * 1024;
/// The most memory taken ahead of the bytes of a file that does not tell its length.
constexpr std::size_t MOST_AHEAD = std::size_t{16} << 20;
constexpr std::uint64_t MAX_COUNT = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint16_t SYNC_MARKER = 0x5344;  // "DS"

}  // namespace

/// Adds what passed since it was last asked for, and returns the sum of all bytes so far.
inline std::uint16_t Archive::TakeSum() noexcept {
  const std::uint16_t added = ByteSum(summed_, static_cast<std::size_t>(next_ - summed_));
  sum_ = static_cast<std::uint16_t>(sum_ + added);
  summed_ = next_;
  return sum_;
}

Archive::Archive()
    : objects_(std::make_unique<ArchivePrivate::ObjectTable>()),
      managed_(std::make_unique<ArchivePrivate::ManagedLoadStorage>()) {}

Archive::Archive(const GString& path, Mode mode) : Archive() {
  OpenFile(path, mode);
}

Archive::~Archive() {
  if (!IsOpen()) return;
  const bool isGivenUp = isCut_ || hasFailed_ || IsUnwinding();
  if (isGivenUp && replacement_ != nullptr) {
    Abandon();
    return;
  }
  try {
    Close();
  } catch (...) {  // a destructor cannot report
  }
}

// Opening and closing.

/// Returns whether an exception is on its way that was not when the archive was opened.
bool Archive::IsUnwinding() const noexcept {
  return std::uncaught_exceptions() > exceptionsAtOpen_;
}

bool Archive::IsMemory() const noexcept {
  return file_ != nullptr && file_->IsMemoryFile();
}

void Archive::CheckIsClosed(int line) const {
  if (IsOpen()) ThrowInternalError(SHARED_MODULE, UNIT, line);
}

void Archive::OpenFile(const GString& path, Mode mode) {
  if (path.empty()) ThrowInternalError(SHARED_MODULE, UNIT, LINE_EMPTY_PATH);
  CheckIsClosed(LINE_ALREADY_OPEN);
  const GString resolved = CPath(path).GetFullPath();
  const GString& fullPath = resolved.empty() ? path : resolved;  // empty for very long ones
  auto file = std::make_unique<CFile>();
  if (mode == Store && !platform::IsDevice(fullPath)) {
    replacement_ = std::make_unique<CReplacementFile>(fullPath);
    file = nullptr;
  } else if (mode == Store) {
    file->Open(fullPath, CFile::AccessWrite, CFile::ModeCreateAlways, CFile::ShareNone);
  } else {
    file->Open(fullPath, CFile::AccessRead, CFile::ModeOpenExisting, CFile::ShareRead);
  }
  Open(std::move(file), mode);
}

void Archive::OpenMem() {
  CheckIsClosed(LINE_ALREADY_OPEN);
  auto file = std::make_unique<CFile>();
  file->Open();
  Open(std::move(file), Store);
}

void Archive::OpenMem(const unsigned char* data, std::uint64_t size) {
  CheckIsClosed(LINE_ALREADY_OPEN);
  if (size > MAX_COUNT) {
    ThrowErrorImpl(UNIT, __LINE__, L"Unable to open '%s'.\n%s", L"memory file", L"out of range");
  }
  auto file = std::make_unique<CFile>();
  // An archive that loads never writes to its file.
  file->Open(const_cast<unsigned char*>(data), static_cast<std::uint32_t>(size));
  Open(std::move(file), Load);
  begin_ = summed_ = next_ = file_->GetBuffer();
  end_ = begin_ + size;
}

void Archive::Open(std::unique_ptr<CFile> file, Mode mode) {
  if (mode == Store || !file->IsMemoryFile()) {
    block_ = std::make_unique_for_overwrite<unsigned char[]>(BLOCK_SIZE);
  }
  file_ = std::move(file);
  mode_ = mode == Store ? Store : Load;
  begin_ = summed_ = next_ = end_ = block_.get();
  if (mode_ == Store) end_ += BLOCK_SIZE;
  exceptionsAtOpen_ = std::uncaught_exceptions();
}

void Archive::Reset() noexcept {
  sum_ = 0;
  ReleaseLoaded(false, isCut_ || IsUnwinding());
  classNames_.clear();
  classTypes_.clear();
  withoutBytes_ = 0;
  isCut_ = hasFailed_ = false;
}

void Archive::ForgetFile() noexcept {
  file_.reset();
  replacement_.reset();
  block_.reset();
  begin_ = summed_ = next_ = end_ = nullptr;
  blockPosition_ = 0;
  isPositionLost_ = false;
  Reset();
}

void Archive::Close() {
  if (!IsOpen()) ThrowInternalError(SHARED_MODULE, UNIT, LINE_CLOSE_WITHOUT_FILE);
  struct Closer {
    Archive& archive;
    ~Closer() { archive.ForgetFile(); }
  };
  const Closer closer{*this};
  Finish();
}

void Archive::Finish() {
  if (replacement_ == nullptr) {
    if (mode_ == Store) FlushBlock();
    file_->Close();
    return;
  }
  if (isCut_) {
    ThrowErrorImpl(UNIT, __LINE__, L"Unable to write '%s'.\n%s", GetDisplayName().c_str(),
                   L"Not everything could be stored.");
  }
  FlushBlock();
  replacement_->Commit();
}

void Archive::Abandon() noexcept {
  if (IsOpen()) ForgetFile();
}

const unsigned char* Archive::GetBuffer() {
  if (!IsMemory()) return nullptr;
  if (mode_ == Store) FlushBlock();
  return file_->GetBuffer();
}

std::uint64_t Archive::GetSize() {
  if (!IsOpen()) return 0;
  if (mode_ == Store) FlushBlock();
  return replacement_ != nullptr ? replacement_->GetLength()
                                 : static_cast<std::uint64_t>(file_->GetLength());
}

std::wstring Archive::GetFilename() const {
  if (replacement_ != nullptr) return replacement_->GetFilePath().String();
  return file_ ? file_->GetFilePath().String() : std::wstring();
}

std::wstring Archive::GetDisplayName() const {
  return IsMemory() ? L"memory file" : GetFilename();
}

// Bytes.

/// Writes to the file at the position of the block.
void Archive::WriteOut(const unsigned char* bytes, std::size_t count) {
  const bool wasLost = std::exchange(isPositionLost_, true);
  const bool hadFailed = std::exchange(hasFailed_, true);
  if (replacement_ != nullptr) {
    if (wasLost) replacement_->Truncate(blockPosition_);
    // It gathers what it gets, so that much goes in pieces.
    for (std::size_t done = 0; done < count;) {
      const std::size_t piece = std::min(count - done, BLOCK_SIZE);
      replacement_->Write({reinterpret_cast<const char*>(bytes) + done, piece});
      done += piece;
    }
  } else {
    if (wasLost) file_->Seek(static_cast<std::int64_t>(blockPosition_), CFile::OriginBegin);
    file_->Write(bytes, static_cast<std::uint32_t>(count));
  }
  isPositionLost_ = false;
  hasFailed_ = hadFailed;
  blockPosition_ += count;
}

void Archive::FlushBlock() {
  TakeSum();
  const std::size_t size = static_cast<std::size_t>(next_ - begin_);
  if (size == 0) return;
  WriteOut(begin_, size);
  next_ = summed_ = begin_;
}

/// Stores what does not fit into the rest of the block.
void Archive::WritePast(const unsigned char* bytes, std::size_t count) {
  // The block goes first: when that fails, nothing of these bytes is in it.
  FlushBlock();
  if (count <= Room()) {
    std::memcpy(next_, bytes, count);
    next_ += count;
    return;
  }
  WriteOut(bytes, count);
  sum_ = static_cast<std::uint16_t>(sum_ + ByteSum(bytes, count));
}

void Archive::Write(const void* buffer, unsigned int count) {
  if (!IsOpen()) ThrowInternalError(SHARED_MODULE, UNIT, LINE_WRITE_WITHOUT_FILE);
  if (count == 0) return;
  if (buffer == nullptr) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (mode_ == Load) {
    // A file opened for reading reports this itself; memory that is loaded is the caller's.
    if (!IsMemory()) file_->Write(buffer, count);
    ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  }
  const unsigned char* const bytes = static_cast<const unsigned char*>(buffer);
  if (count > Room()) {
    WritePast(bytes, count);
    return;
  }
  std::memcpy(next_, bytes, count);
  next_ += count;
}

/// Reads ahead into the empty block. Returns false at the end of the file.
bool Archive::RefillBlock() {
  if (file_->IsMemoryFile()) return false;
  TakeSum();
  blockPosition_ += static_cast<std::uint64_t>(next_ - begin_);
  begin_ = summed_ = next_ = end_ = block_.get();
  end_ += file_->Read(begin_, BLOCK_SIZE);
  return next_ != end_;
}

/// Takes bytes from the block. Many are added up as they are copied.
void Archive::MoveFromBlock(unsigned char* bytes, std::size_t count) {
  if (count < LEAST_SUMMED_AT_ONCE) {
    std::memcpy(bytes, next_, count);
    next_ += count;
    return;
  }
  TakeSum();
  sum_ = static_cast<std::uint16_t>(sum_ + CopyAndSum(bytes, next_, count));
  next_ += count;
  summed_ = next_;
}

/// Reads some of `count` bytes and returns how many; 0 at the end of the file.
std::size_t Archive::ReadSome(unsigned char* bytes, std::size_t count) {
  if (next_ == end_ && count >= BLOCK_SIZE && !file_->IsMemoryFile()) {
    TakeSum();
    blockPosition_ += static_cast<std::uint64_t>(next_ - begin_);
    begin_ = summed_ = next_ = end_ = block_.get();
    const auto piece = static_cast<std::uint32_t>(std::min(count, READ_SIZE));
    const std::size_t got = file_->Read(bytes, piece);
    blockPosition_ += got;
    sum_ = static_cast<std::uint16_t>(sum_ + ByteSum(bytes, got));
    return got;
  }
  if (next_ == end_ && !RefillBlock()) return 0;
  const std::size_t got = std::min(count, Room());
  MoveFromBlock(bytes, got);
  return got;
}

void Archive::Read(void* buffer, unsigned int count) {
  if (!IsOpen()) ThrowInternalError(SHARED_MODULE, UNIT, LINE_READ_WITHOUT_FILE);
  if (count == 0) return;
  if (buffer == nullptr) ThrowInternalError(SHARED_MODULE, UNIT, __LINE__);
  if (mode_ == Store) {
    // A device opened for writing reports this itself; other files stand at their end.
    FlushBlock();
    if (file_ != nullptr && !file_->IsMemoryFile()) file_->Read(buffer, count);
    ThrowShortRead();
  }
  unsigned char* bytes = static_cast<unsigned char*>(buffer);
  const std::uint16_t sumBefore = TakeSum();
  for (std::size_t left = count; left > 0;) {
    const std::size_t got = ReadSome(bytes, left);
    if (got == 0) {
      sum_ = sumBefore;
      summed_ = next_;
      ThrowShortRead();
    }
    bytes += got;
    left -= got;
  }
}

void Archive::Transfer(void* buffer, unsigned int count) {
  if (mode_ == Store) {
    Write(buffer, count);
  } else {
    Read(buffer, count);
  }
}

void Archive::RequireBytes(std::uint64_t count) {
  if (mode_ == Store || count <= Room()) return;
  if (!IsOpen()) ThrowInternalError(SHARED_MODULE, UNIT, LINE_READ_WITHOUT_FILE);
  const std::int64_t length = file_->GetLength();
  // Pipes and devices say 0. A file that really is empty ends at the next read.
  if (length == 0 && !file_->IsMemoryFile()) return;
  const std::uint64_t size = static_cast<std::uint64_t>(length);
  const std::uint64_t position = GetPosition();
  if (position > size || count > size - position) ThrowShortRead();
}

void Archive::ThrowShortRead() {
  isCut_ = true;
  ThrowErrorImpl(UNIT, LINE_SHORT_READ, L"Unable to read '%s'.\n%s", GetDisplayName().c_str(),
                 L"Unexpected end of file");
}

void Archive::ThrowUnwritable(int line) {
  isCut_ = true;
  ThrowErrorImpl(UNIT, line, L"Unable to write '%s'.\n%s", GetDisplayName().c_str(),
                 L"out of range");
}

void Archive::ThrowUnreadable() const {
  ThrowErrorImpl(UNIT, LINE_TEXT_TOO_LONG, L"Unrecoverable error reading archive.");
}

void Archive::CountWithoutBytes() {
  if (++withoutBytes_ <= MOST_WITHOUT_BYTES) return;
  if (mode_ == Store) ThrowUnwritable(__LINE__);
  ThrowShortRead();
}

// Values.

void Archive::Transfer(long& value) {
  std::int32_t stored = static_cast<std::int32_t>(value);
  if (mode_ == Store && stored != value) ThrowUnwritable(__LINE__);
  TransferValue(stored);
  value = stored;
}

void Archive::Transfer(unsigned long& value) {
  std::uint32_t stored = static_cast<std::uint32_t>(value);
  if (mode_ == Store && stored != value) ThrowUnwritable(__LINE__);
  TransferValue(stored);
  value = stored;
}

void Archive::Transfer(Color4b& color) {
  TransferValue(color);
}

void Archive::Transfer(Vec2<float>& vector) {
  TransferValue(vector);
}

void Archive::Transfer(Vec2<double>& vector) {
  TransferValue(vector);
}

void Archive::Transfer(Box2<float>& box) {
  TransferValue(box);
}

void Archive::Transfer(Box2<double>& box) {
  TransferValue(box);
}

void Archive::Transfer(Vec3<int>& vector) {
  TransferValue(vector);
}

void Archive::Transfer(Vec3<double>& vector) {
  TransferValue(vector);
}

void Archive::Transfer(Quat4<double>& rotation) {
  TransferValue(rotation);
}

void Archive::Transfer(Box3<double>& box) {
  TransferValue(box);
}

void Archive::Transfer(Mat4<double>& matrix) {
  // Asking for a row to write to makes the matrix forget its type.
  Transfer(static_cast<void*>(matrix[0]), 16 * sizeof(double));
}

// Text.

std::uint32_t Archive::LoadCount() {
  std::uint32_t count = 0;
  TransferValue(count);
  return count;
}

void Archive::StoreCount(std::size_t count) {
  if (count > MAX_COUNT) ThrowUnwritable(__LINE__);
  std::uint32_t stored = static_cast<std::uint32_t>(count);
  TransferValue(stored);
}

void Archive::TransferCount(std::size_t& count) {
  // Classes that transfer their elements themselves pass here at each depth.
  EnterLevel();
  --levels_;
  if (mode_ == Store) {
    StoreCount(count);
  } else {
    count = LoadCount();
  }
}

void Archive::StoreText(const char* text, std::size_t size) {
  StoreCount(size);
  if (size > Room()) {
    const bool wasCut = std::exchange(isCut_, true);  // a count without its text
    WritePast(reinterpret_cast<const unsigned char*>(text), size);
    isCut_ = wasCut;
    return;
  }
  if (size > 0) std::memcpy(next_, text, size);
  next_ += size;
}

void Archive::StoreText(const wchar_t* text, std::size_t size) {
  const std::wstring_view units(text, size);
  if (size <= Room() / sizeof(wchar_t) && Room() - size * sizeof(wchar_t) >= 4) {
    // Encoded in place; the count in front of it is known afterwards.
    char* const encoded = reinterpret_cast<char*>(next_ + 4);
    const std::size_t bytes = WideToUtf16(units, ByteOrder::LittleEndian, encoded);
    StoreCount(bytes / 2);
    next_ += bytes;
    return;
  }
  std::string encoded(size * sizeof(wchar_t), '\0');
  encoded.resize(WideToUtf16(units, ByteOrder::LittleEndian, encoded.data()));
  StoreCount(encoded.size() / 2);
  const bool wasCut = std::exchange(isCut_, true);
  const std::uint64_t most = MAX_COUNT / 2;
  for (std::size_t done = 0; done < encoded.size();) {
    const std::size_t piece = std::min<std::size_t>(encoded.size() - done, most);
    Write(encoded.data() + done, static_cast<unsigned>(piece));
    done += piece;
  }
  isCut_ = wasCut;
}

/// Replaces `bytes` by the next `count` ones.
void Archive::LoadBytes(std::string& bytes, std::size_t count) {
  if (count <= Room()) {
    bytes.assign(reinterpret_cast<const char*>(next_), count);
    next_ += count;
    return;
  }
  RequireBytes(count);
  bytes.resize(std::min(count, MOST_AHEAD));
  for (std::size_t done = 0;;) {
    Read(bytes.data() + done, static_cast<unsigned>(bytes.size() - done));
    done = bytes.size();
    if (done == count) return;
    bytes.resize(done + std::min(count - done, MOST_AHEAD));
  }
}

void Archive::Transfer(char* buffer, std::uint64_t capacity) {
  if (mode_ == Store) {
    StoreText(buffer, buffer == nullptr ? 0 : std::strlen(buffer));
    return;
  }
  const std::uint32_t count = LoadCount();
  if (buffer == nullptr || count >= capacity) ThrowUnreadable();
  Read(buffer, count);
  buffer[count] = '\0';
}

void Archive::Transfer(wchar_t* buffer, std::uint64_t capacity) {
  if (mode_ == Store) {
    StoreText(buffer, buffer == nullptr ? 0 : std::wcslen(buffer));
    return;
  }
  const std::uint32_t count = LoadCount();
  if (buffer == nullptr || count >= capacity) ThrowUnreadable();
  std::string encoded;
  LoadBytes(encoded, std::size_t{count} * 2);
  buffer[Utf16ToWide(encoded, ByteOrder::LittleEndian, buffer)] = L'\0';
}

void Archive::Transfer(std::string& text) {
  if (mode_ == Store) {
    StoreText(text.data(), std::strlen(text.c_str()));
    return;
  }
  const std::uint32_t count = LoadCount();
  if (count != 0) LoadBytes(text, count);
}

void Archive::Transfer(std::wstring& text) {
  if (mode_ == Store) {
    StoreText(text.data(), std::wcslen(text.c_str()));
    return;
  }
  const std::size_t size = std::size_t{LoadCount()} * 2;
  if (size == 0) return;
  if (size <= Room()) {
    const std::string_view encoded(reinterpret_cast<const char*>(next_), size);
    text.resize(size / 2);
    text.resize(Utf16ToWide(encoded, ByteOrder::LittleEndian, text.data()));
    next_ += size;
    return;
  }
  std::string encoded;
  LoadBytes(encoded, size);
  text.resize(size / 2);
  text.resize(Utf16ToWide(encoded, ByteOrder::LittleEndian, text.data()));
}

// Checks.

void Archive::SyncCheck() {
  std::uint16_t marker = SYNC_MARKER;
  TransferValue(marker);
  const std::uint16_t computed = TakeSum();
  std::uint16_t stored = computed;
  TransferValue(stored);
  if (marker == SYNC_MARKER && stored == computed) return;
  isCut_ = true;
  ThrowErrorImpl(UNIT, LINE_DAMAGED,
                 L"File '%s' cannot be read because the file is damaged near offset 0x%08I64x.  "
                 L"Computed CRC=0x%04x, File CRC=0x%04x\n",
                 GetDisplayName().c_str(), GetPosition() - sizeof stored,
                 static_cast<unsigned>(computed), static_cast<unsigned>(stored));
}

}  // namespace shr
