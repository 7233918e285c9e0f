// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include <new>
#include <utility>

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/polygons/GPolygon.h"
#include "shared/polygons/clipper/GpcHolder.h"
#include "shared/polygons/formats/PolygonFileIo.h"

namespace shr {
namespace {

constexpr const wchar_t* UNIT = L"GPolygon";

using Reader = bool (*)(ByteSource& source, bool holeFlags, GpcPolygon& polygon);
using Writer = void (*)(ByteSink& sink, bool holeFlags, const GpcPolygon& polygon);

/// Reads; every failure of file, bytes and memory becomes one error that names the operation.
void ReadFile(CBufferedFile& file, Reader read, const wchar_t* operation, GpcPolygon& polygon) {
  bool isRead = false;
  try {
    BufferedSource source(file);
    isRead = read(source, true, polygon);
  } catch (const InternalErrorException&) {
    throw;
  } catch (const Exception&) {
  } catch (const std::bad_alloc&) {
  }
  if (isRead) return;
  ThrowErrorImpl(UNIT, __LINE__, L"Unable to read '%s'.\n%s", NameOf(file).c_str(), operation);
}

void WriteFile(CBufferedFile& file, Writer write, const wchar_t* operation,
               const GpcPolygon& polygon) {
  try {
    BufferedSink sink(file);
    write(sink, true, polygon);
    sink.Finish();
    file.Flush();
    return;
  } catch (const InternalErrorException&) {
    throw;
  } catch (const Exception&) {
  }
  ThrowErrorImpl(UNIT, __LINE__, L"Unable to write '%s'.\n%s", NameOf(file).c_str(), operation);
}

}  // namespace

void GPolygon::LoadFromTextFile(CBufferedFile& file) {
  GpcPolygonHolder loaded;
  ReadFile(file, ReadGpcText, L"GPolygon::LoadFromTextFile", loaded.record);
  TakeOpened(loaded.record);
}

void GPolygon::LoadFromBinaryFile(CBufferedFile& file) {
  GpcPolygonHolder loaded;
  ReadFile(file, ReadGpcBinary, L"GPolygon::LoadFromBinaryFile", loaded.record);
  TakeOpened(loaded.record);
}

void GPolygon::DumpToTextFile(CBufferedFile& file) const {
  WriteFile(file, WriteGpcText, L"GPolygon::DumpToTextFile", record_);
}

void GPolygon::DumpToBinaryFile(CBufferedFile& file) const {
  WriteFile(file, WriteGpcBinary, L"GPolygon::DumpToBinaryFile", record_);
}

}  // namespace shr
