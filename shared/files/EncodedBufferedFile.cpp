// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/files/EncodedBufferedFile.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "shared/diagnostics/ThrowError.h"
#include "shared/files/TextDetection.h"
#include "shared/files/TextStream.h"
#include "shared/platform/Paths.h"
#include "shared/platform/RawFile.h"
#include "shared/platform/TextMode.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT_NAME = L"EncodedBufferedFile";
constexpr std::size_t SAMPLE_BYTES = 512;

/// The modes in which content and mark decide about the encoding.
constexpr std::array<std::wstring_view, 6> READING_MODES = {L"r",   L"r+", L"rt",
                                                            L"rt+", L"rb", L"rb+"};

/// Reads up to a sample of bytes from the position of a descriptor.
std::optional<std::string> ReadSample(int descriptor) {
  std::string bytes(SAMPLE_BYTES, '\0');
  std::size_t size = 0;
  while (size < bytes.size()) {
    const auto got = platform::ReadDescriptor(descriptor, bytes.data() + size, bytes.size() - size);
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
  }
  bytes.resize(size);
  return bytes;
}

/// Returns the first bytes of a file that will be opened for output only, empty when there are none
/// or they cannot be read.
std::string PeekAtFile(const GString& path) {
  platform::FileOpenOptions options;
  options.read = true;
  const int descriptor = platform::OpenDescriptor(path, options);
  if (descriptor == platform::NO_DESCRIPTOR) return {};
  const std::optional<std::string> bytes = ReadSample(descriptor);
  platform::CloseDescriptor(descriptor);
  return bytes.value_or(std::string());
}

}  // namespace

/// What the letters of a mode say.
struct CEncodedBufferedFile::Mode {
  bool isReading = false;  ///< content and mark decide about the encoding
  bool isText = true;
  platform::FileOpenOptions options;

  /// Returns nothing when `text` is no mode.
  static std::optional<Mode> Parse(std::wstring_view text);
};

/// The arguments of an open, but for path and mode.
struct CEncodedBufferedFile::Request {
  Sharing sharing;
  TextEncoding encoding;
  unsigned codePage;
  bool keepEncoding;
  bool removeWhenAbandoned;
};

std::optional<CEncodedBufferedFile::Mode> CEncodedBufferedFile::Mode::Parse(
    std::wstring_view text) {
  Mode mode;
  const wchar_t kind = text.empty() ? L'\0' : text.front();
  mode.options.read = kind == L'r';
  mode.options.truncate = kind == L'w';
  mode.options.append = kind == L'a';
  mode.options.write = mode.options.create = mode.options.truncate || mode.options.append;
  if (!mode.options.read && !mode.options.write) return std::nullopt;
  const std::wstring_view letters = text.substr(1);
  const auto countOf = [letters](wchar_t ch) {
    return std::count(letters.begin(), letters.end(), ch);
  };
  const auto plus = countOf(L'+');
  const auto binary = countOf(L'b');
  const auto kinds = binary + countOf(L't');
  if (plus > 1 || kinds > 1 || static_cast<std::size_t>(plus + kinds) != letters.size()) {
    return std::nullopt;
  }
  if (plus == 1) mode.options.read = mode.options.write = true;
  mode.isText = binary == 0;
  mode.isReading =
      std::find(READING_MODES.begin(), READING_MODES.end(), text) != READING_MODES.end();
  return mode;
}

CEncodedBufferedFile::CEncodedBufferedFile() noexcept = default;

CEncodedBufferedFile::CEncodedBufferedFile(const GString& path, const GString& mode,
                                           Sharing sharing, TextEncoding encoding,
                                           unsigned codePage, bool keepEncoding,
                                           bool removeWhenAbandoned) {
  Open(path, mode, sharing, encoding, codePage, keepEncoding, removeWhenAbandoned);
}

CEncodedBufferedFile::CEncodedBufferedFile(const CEncodedBufferedFile& other)
    : codePage_(other.codePage_), isInWholeLines_(other.isInWholeLines_) {}

CEncodedBufferedFile::CEncodedBufferedFile(CEncodedBufferedFile&& other) noexcept {
  *this = std::move(other);
}

CEncodedBufferedFile& CEncodedBufferedFile::operator=(const CEncodedBufferedFile& other) {
  if (this == &other) return *this;
  Close();
  codePage_ = other.codePage_;
  isInWholeLines_ = other.isInWholeLines_;
  return *this;
}

CEncodedBufferedFile& CEncodedBufferedFile::operator=(CEncodedBufferedFile&& other) noexcept {
  if (this == &other) return *this;
  if (IsOpen()) Abort(removeWhenAbandoned_);
  removeWhenAbandoned_ = other.removeWhenAbandoned_;
  isReadable_ = other.isReadable_;
  path_ = std::exchange(other.path_, GString());
  fullPath_ = std::exchange(other.fullPath_, GString());
  stream_ = std::move(other.stream_);
  encoding_ = other.encoding_;
  codePage_ = other.codePage_;
  isInWholeLines_ = other.isInWholeLines_;
  markSize_ = other.markSize_;
  lineBuffer_ = std::exchange(other.lineBuffer_, GString());
  cursor_ = std::exchange(other.cursor_, 0);
  isContinued_ = other.isContinued_;
  return *this;
}

CEncodedBufferedFile::~CEncodedBufferedFile() {
  if (IsOpen()) Abort(removeWhenAbandoned_);
}

// Opening and closing.

void CEncodedBufferedFile::Open(const GString& path, const GString& mode, Sharing sharing,
                                TextEncoding encoding, unsigned codePage, bool keepEncoding,
                                bool removeWhenAbandoned) {
  GString reason;
  const Request request = {sharing, encoding, codePage, keepEncoding, removeWhenAbandoned};
  if (TryOpen(path, mode, request, reason)) return;
  ThrowErrorImpl(UNIT_NAME, __LINE__, L"Unable to open '%s'.\n%s", path.c_str(), reason.c_str());
}

bool CEncodedBufferedFile::OpenNoThrow(const GString& path, const GString& mode, Sharing sharing,
                                       TextEncoding encoding, unsigned codePage, bool keepEncoding,
                                       bool removeWhenAbandoned) {
  GString reason;
  const Request request = {sharing, encoding, codePage, keepEncoding, removeWhenAbandoned};
  return TryOpen(path, mode, request, reason);
}

bool CEncodedBufferedFile::TryOpen(const GString& path, const GString& modeText,
                                   const Request& request, GString& reason) {
  if (path.empty() || modeText.empty() || IsOpen() || request.sharing < ShareNone ||
      request.sharing > ShareAll) {
    ThrowInternalError(SHARED_MODULE, UNIT_NAME, __LINE__);
  }
  path_ = path;
  fullPath_ = platform::AnchorPath(path);
  if (request.encoding < EncodingANSI || request.encoding > EncodingUTF16BE) {
    ThrowErrorImpl(UNIT_NAME, __LINE__, INVALID_PARAMETER_TEXT);
  }
  std::optional<Mode> mode = Mode::Parse(modeText);
  if (!mode) {
    reason = INVALID_PARAMETER_TEXT;
    return false;
  }
  mode->options.sharing = static_cast<platform::FileSharing>(request.sharing);

  std::optional<std::string> head(std::string{});
  if (mode->options.append) head = PeekAtFile(path);
  const int descriptor = platform::OpenDescriptor(path, mode->options);
  if (descriptor == platform::NO_DESCRIPTOR) {
    reason = platform::LastErrorText();
    return false;
  }
  const bool isContentKept = !mode->options.create;
  if (isContentKept) head = ReadSample(descriptor);
  if (!head) {
    reason = platform::LastErrorText();
    platform::CloseDescriptor(descriptor);
    return false;
  }

  // A file that may not be read has no mark that is known; what is in it stays its only head.
  const bool isNew = mode->options.create && platform::GetDescriptorLength(descriptor) == 0;
  Detect(*head, *mode, request, isNew);
  codePage_ = request.codePage;
  removeWhenAbandoned_ = request.removeWhenAbandoned;
  isReadable_ = mode->options.read;
  lineBuffer_.clear();
  cursor_ = 0;
  const bool isTranslated = mode->isText && platform::TextModeTranslatesLineEnds();
  const TextFormat format = {encoding_, codePage_,
                             isTranslated ? LineEnds::CarriageReturnLineFeed : LineEnds::AsStored,
                             isInWholeLines_};
  stream_ = std::make_unique<TextStream>(
      descriptor, path, format, mode->options.append ? WritePlace::AtEnd : WritePlace::AtPosition);
  if (isContentKept) {
    stream_->Preload(*head, markSize_);
  } else if (isNew) {
    stream_->WriteBytes(MarkOf(encoding_));
  } else if (isReadable_) {
    stream_->Seek(static_cast<std::int64_t>(markSize_));
  }
  return true;
}

/// Sets the encoding in force and the size of the mark that the file has, or will have once its
/// head is written.
void CEncodedBufferedFile::Detect(const std::string& head, const Mode& mode, const Request& request,
                                  bool isNew) {
  const ByteOrderMark mark = FindByteOrderMark(head);
  encoding_ = request.encoding;
  if (mode.isReading) {
    if (!request.keepEncoding) {
      encoding_ = ChooseEncoding(request.encoding, {head, SAMPLE_BYTES}, mark);
    }
  } else if (encoding_ != EncodingANSI && mark.size != 0) {
    encoding_ = mark.encoding;
  }
  markSize_ = isNew ? MarkOf(encoding_).size() : mark.size;
  if (encoding_ == EncodingANSI) markSize_ = 0;
}

void CEncodedBufferedFile::Close() {
  path_.clear();
  lineBuffer_.clear();
  cursor_ = 0;
  const std::unique_ptr<TextStream> stream = std::move(stream_);
  if (stream) stream->Close();
}

void CEncodedBufferedFile::Abort(bool remove) noexcept {
  stream_.reset();
  lineBuffer_.clear();
  cursor_ = 0;
  const GString path = std::exchange(path_, GString());
  if (remove && !path.empty()) platform::RemoveFile(fullPath_);
}

// Reading.

bool CEncodedBufferedFile::FillInputBuffer() {
  lineBuffer_.clear();
  cursor_ = 0;
  isContinued_ = false;
  return stream_ && stream_->AppendLine(lineBuffer_.String());
}

wchar_t CEncodedBufferedFile::Getc() {
  // In some code pages a line may be nothing but shifts, and so no text.
  while (cursor_ == lineBuffer_.size()) {
    if (!FillInputBuffer()) return END_OF_TEXT;
  }
  return lineBuffer_[cursor_++];
}

wchar_t CEncodedBufferedFile::UnGetc(wchar_t unit) {
  if (!isReadable_ || !IsOpen()) return END_OF_TEXT;
  // At the end the buffer is empty; what stands in it was read.
  const bool wasRead = cursor_ > 0 && lineBuffer_[cursor_ - 1] == END_OF_TEXT;
  if (unit == END_OF_TEXT && !wasRead) return END_OF_TEXT;
  const bool isLast = cursor_ == lineBuffer_.size();
  wchar_t replaced = L'\n';
  if (cursor_ > 0) {
    replaced = std::exchange(lineBuffer_[--cursor_], unit);
  } else {
    lineBuffer_.String().insert(lineBuffer_.begin(), unit);
  }
  // Where a line feed was last, or no line was begun, other text belongs to the next line.
  if (isLast && replaced == L'\n') isContinued_ = unit != L'\n';
  return unit;
}

bool CEncodedBufferedFile::ReadString(std::wstring& line) {
  if (!stream_) return false;
  const std::size_t begin = line.size();
  if (cursor_ == lineBuffer_.size()) {
    stream_->AppendLine(line);
  } else {
    TakeBuffered(line);
  }
  std::size_t end = line.size();
  if (end == begin) return false;
  if (line[end - 1] == L'\n') {
    --end;
    if (end > begin && line[end - 1] == L'\r') --end;
    line.resize(end);
  }
  return true;
}

/// Appends the rest of the buffered line, and the line in the file that goes on with it.
void CEncodedBufferedFile::TakeBuffered(std::wstring& line) {
  line.append(lineBuffer_.String(), cursor_);
  lineBuffer_.clear();
  cursor_ = 0;
  if (isContinued_) stream_->AppendLine(line);
}

bool CEncodedBufferedFile::EndOfFile() {
  if (cursor_ < lineBuffer_.size()) return false;
  if (!stream_) return true;
  return isReadable_ ? stream_->IsAtEnd() : stream_->GetPosition() >= stream_->GetLength();
}

// Writing.

TextStream& CEncodedBufferedFile::CheckedStream() {
  if (!stream_) ThrowInternalError(SHARED_MODULE, UNIT_NAME, __LINE__);
  return *stream_;
}

wchar_t CEncodedBufferedFile::Putc(unsigned short unit) {
  return Putc(static_cast<wchar_t>(unit));
}

wchar_t CEncodedBufferedFile::Putc(wchar_t unit) {
  TextStream& stream = CheckedStream();
  lineBuffer_.clear();
  cursor_ = 0;
  stream.Write({&unit, 1});
  return unit;
}

void CEncodedBufferedFile::WriteString(const std::wstring& text) {
  TextStream& stream = CheckedStream();
  lineBuffer_.clear();
  cursor_ = 0;
  stream.Write(text);
}

void CEncodedBufferedFile::Flush() {
  if (stream_) stream_->Flush();
}

// Position.

void CEncodedBufferedFile::SeekToBegin() {
  CheckedStream().Seek(static_cast<std::int64_t>(markSize_));
  lineBuffer_.clear();
  cursor_ = 0;
}

void CEncodedBufferedFile::SeekToEnd() {
  TextStream& stream = CheckedStream();
  stream.Seek(stream.GetLength());
  lineBuffer_.clear();
  cursor_ = 0;
}

std::int64_t CEncodedBufferedFile::GetPosition() const {
  return stream_ ? stream_->GetPosition() : -1;
}

std::int64_t CEncodedBufferedFile::GetLength() const {
  return stream_ ? stream_->GetLength() : -1;
}

void CEncodedBufferedFile::SetCodePage(unsigned codePage) {
  codePage_ = codePage;
  if (stream_ && encoding_ == EncodingANSI) stream_->SetCodePage(codePage);
}

void CEncodedBufferedFile::SetWholeLines(bool isInWholeLines) {
  isInWholeLines_ = isInWholeLines;
  if (stream_) stream_->SetWholeLines(isInWholeLines);
}

}  // namespace shr
