// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Archive`, the library's binary stream: one `Serialize` routine of a class both stores and loads
/// its fields.
///
/// The stream is the plain sequence of the values transferred, little endian, the same bytes on
/// every target (docs/archive-format.md). Containers, typed pointers and shared handles are in
/// shared/archive/ArchiveTemplates.h. A file that must be the old or the new one at any moment is
/// stored in memory and written by `CReplacementFile`.
///
///     Archive archive(path, Archive::Store);
///     archive.Transfer(name);
///     archive.Transfer(depth);
///     archive.SyncCheck();
///     archive.Close();
///
/// Threads: one thread an archive.

#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "shared/Export.h"

namespace shr {

class CFile;
class Color4b;
class CTypedObject;
class GString;
template <class T>
class Box2;
template <class T>
class Box3;
template <class T>
class Mat4;
template <std::floating_point T>
struct Quat4;
template <class T>
struct Vec2;
template <class T>
struct Vec3;

namespace ArchivePrivate {

class ObjectTable;

/// The shared ownership of loaded objects: all handles to one object form one group of owners.
class SHARED_API ManagedLoadStorage {
public:
  ManagedLoadStorage();
  ~ManagedLoadStorage();
  ManagedLoadStorage(const ManagedLoadStorage&) = delete;
  ManagedLoadStorage& operator=(const ManagedLoadStorage&) = delete;

  /// Returns the handle to `object`: a copy of the one given before, or a new one, which from now
  /// on owns the object together with this storage. Null gives an empty handle. Cost: O(log n).
  std::shared_ptr<CTypedObject> UnmanagedToManaged(CTypedObject* object);

  /// Forgets all handles; objects that nobody else holds are destroyed.
  void Reset() noexcept;

private:
  struct Handles;
  std::unique_ptr<Handles> handles_;
};

}  // namespace ArchivePrivate

/// A binary stream that stores to or loads from a file on disk or in memory.
///
/// Bytes move through a block in memory, so a small transfer costs no call of the system; `Close`
/// and the destructor write what is left in it. Sums and positions are those of the stream.
///
/// Errors: `Exception`s of unit "Archive" or "File", told at each operation. A short read gives
/// "Unable to read '%s'.\n%s" with the file's name ("memory file" in memory) and "Unexpected end of
/// file"; when the file cannot hold what a length promises, before memory is taken for it. A write
/// that fails is reported by the transfer that needed the room or by `Close`; what is in the block
/// stays there, and the next transfer or `Close` tries again. After a failed load the archive is of
/// no more use than to be asked for `GetLoadedObjects` and closed.
class SHARED_API Archive {
public:
  enum Mode : std::int32_t { Load = 0, Store = 1 };

  /// No file; mode `Load`, version 1.
  Archive();
  /// Opens `path` as `OpenFile` does.
  Archive(const GString& path, Mode mode);
  /// Writes what is left in the block and closes the file. A failure of that has nowhere to go: a
  /// program that must know calls `Close`.
  ~Archive();
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;

  /// Opens a new or emptied file to store, which nobody else may open meanwhile, or an existing one
  /// to load, which nobody else may write meanwhile.
  /// Errors: "Unable to open '%s'.\n%s"; internal errors for an empty path and an open archive.
  void OpenFile(const GString& path, Mode mode);
  /// Opens an empty file in memory to store.
  void OpenMem();
  /// Opens bytes in memory to load, which stay the caller's and are not copied.
  /// Errors: "Unable to open '%s'.\n%s" from 4 GiB on.
  void OpenMem(const unsigned char* data, std::uint64_t size);

  /// Closes the file and forgets sum, objects and class names; version and user data stay. The
  /// archive is closed also when this throws.
  /// Errors: "Unable to write '%s'.\n%s" or "Unable to close '%s'.\n%s" when the last bytes do not
  /// reach the file; internal error with no file.
  void Close();

  /// Returns the bytes in memory: those stored so far, or those given to `OpenMem`. Null for a file
  /// on disk and with no file. Valid until the next transfer.
  const unsigned char* GetBuffer();
  /// Returns the length in bytes of what was stored so far or can be loaded; 0 with no file.
  std::uint64_t GetSize();
  /// Returns the full path of a file on disk, else the empty text.
  std::wstring GetFilename() const;

  bool IsLoading() const noexcept { return mode_ == Load; }
  bool IsStoring() const noexcept { return mode_ == Store; }

  /// The caller's version of the format, for classes to consult. Never part of the stream.
  int GetVersion() const noexcept { return version_; }
  void SetVersion(int version) noexcept { version_ = version; }

  /// A pointer that is free for the caller; initially null.
  void* GetData() const noexcept { return data_; }
  void SetData(void* data) noexcept { data_ = data; }

  /// Reads exactly `count` bytes, whatever the mode.
  void Read(void* buffer, unsigned int count);
  /// Writes `count` bytes, whatever the mode.
  void Write(const void* buffer, unsigned int count);
  /// Writes when storing, reads when loading.
  void Transfer(void* buffer, unsigned int count);

  // Values, as they lie in memory. Integers of 64 bits have no overload, for their types differ
  // between the targets: transfer them by address and size.

  /// One byte, 0 or 1; any other byte loads as true.
  void Transfer(bool& value);
  void Transfer(char& value) { TransferValue(value); }
  void Transfer(unsigned char& value) { TransferValue(value); }
  void Transfer(short& value) { TransferValue(value); }
  void Transfer(unsigned short& value) { TransferValue(value); }
  void Transfer(int& value) { TransferValue(value); }
  void Transfer(unsigned int& value) { TransferValue(value); }
  /// 32 bits also where `long` is wider. Errors: "Unable to write '%s'.\n%s" with "out of range"
  /// for a value that does not fit.
  void Transfer(long& value);
  void Transfer(unsigned long& value);
  void Transfer(float& value) { TransferValue(value); }
  void Transfer(double& value) { TransferValue(value); }

  /// Four bytes: red, green, blue, alpha.
  void Transfer(Color4b& color);
  /// x, then y.
  void Transfer(Vec2<float>& vector);
  void Transfer(Vec2<double>& vector);
  /// The minimum corner, then the maximum corner.
  void Transfer(Box2<float>& box);
  void Transfer(Box2<double>& box);
  /// x, y, then z; of a quaternion, w after them.
  void Transfer(Vec3<int>& vector);
  void Transfer(Vec3<double>& vector);
  void Transfer(Quat4<double>& rotation);
  /// The minimum corner, then the maximum corner.
  void Transfer(Box3<double>& box);
  /// Sixteen elements row by row. What the matrix knows of its type is forgotten also when storing.
  void Transfer(Mat4<double>& matrix);

  // Text: an unsigned 32-bit count, then the units without a terminator. Text ends at its first
  // zero unit when stored. A count of 0 leaves standard strings as they were when loaded.

  /// Narrow text in a buffer of `capacity` bytes, which only loading consults; null stores the
  /// empty text. Errors: "Unrecoverable error reading archive." when text and terminator do not
  /// fit.
  void Transfer(char* buffer, std::uint64_t capacity);
  /// Wide text as UTF-16LE in a buffer of `capacity` wide characters. Counts are UTF-16 units,
  /// which must be fewer than `capacity`.
  void Transfer(wchar_t* buffer, std::uint64_t capacity);
  void Transfer(std::string& text);
  /// Wide text as UTF-16LE; a `GString` converts to this.
  void Transfer(std::wstring& text);

  /// Stores or loads a reference. The first reference to an object carries its class name and
  /// fields, later ones are its number in the stream, and loading returns the one object for all.
  /// Null is 0. The caller owns what was loaded.
  ///
  /// Laws: an object that refers to itself, also through others, loads as such a cycle.
  /// Errors: "Unable to create object of class %s" for a class that has no record, no creator or
  /// is not derived from `CTypedObject`. "Objects in '%s' are nested more than %u levels deep."
  /// when one object's fields lead to another's, and so on, beyond the depth limit: programs with
  /// long chains transfer all objects first and their links afterwards.
  void TransferObject(CTypedObject*& object);

  /// Stores a check of all bytes before it, or loads and compares one.
  /// Errors: "File '%s' cannot be read because the file is damaged near offset 0x%08x.  Computed
  /// CRC=0x%04x, File CRC=0x%04x\n".
  void SyncCheck();

  /// How many objects may be within each other's `Serialize` at a time. Each level takes 200 to
  /// 400 bytes of stack and what `Serialize` of the class itself needs.
  static constexpr unsigned DEFAULT_DEPTH_LIMIT = 1000;
  void SetDepthLimit(unsigned levels) noexcept { depthLimit_ = levels; }

  /// Returns the objects created since opening, in the order of their first reference, those whose
  /// loading failed included. After a failure they may refer to each other in any unfinished way;
  /// who owns them is known to the caller alone.
  std::vector<CTypedObject*> GetLoadedObjects() const;
  /// Returns the owner of shared handles to loaded objects, emptied by `Close`.
  ArchivePrivate::ManagedLoadStorage& GetManagedLoadStorage() noexcept { return *managed_; }

  /// Transfers the number of elements that follow as an unsigned 32-bit integer.
  /// Errors: "Unable to write '%s'.\n%s" with "out of range" for a count that does not fit.
  void TransferCount(std::size_t& count);

  /// When loading, throws the error of a short read unless `count` more bytes may be there. Call it
  /// before taking memory for a count that was read. Files that do not tell their length, such as
  /// pipes, may always hold more.
  void RequireBytes(std::uint64_t count);

  /// Throws the error for an object whose class does not fit where it was found.
  [[noreturn]] void ThrowUnexpectedClass(const CTypedObject& object) const;

private:
  template <class T>
  void TransferValue(T& value);

  void Reset() noexcept;
  void Open(std::unique_ptr<CFile> file, Mode mode);
  void CheckIsClosed(int line) const;
  std::wstring GetDisplayName() const;

  std::size_t Room() const noexcept { return static_cast<std::size_t>(end_ - next_); }
  std::uint64_t GetPosition() const noexcept;
  std::uint16_t TakeSum() noexcept;

  void WriteOut(const unsigned char* bytes, std::size_t count);
  void FlushBlock();
  bool RefillBlock();
  void WritePast(const unsigned char* bytes, std::size_t count);
  std::size_t ReadSome(unsigned char* bytes, std::size_t count);
  void MoveFromBlock(unsigned char* bytes, std::size_t count);
  [[noreturn]] void ThrowShortRead() const;
  [[noreturn]] void ThrowUnwritable(int line) const;

  std::uint32_t LoadCount();
  void StoreCount(std::size_t count);
  void StoreText(const char* text, std::size_t size);
  void StoreText(const wchar_t* text, std::size_t size);
  void LoadBytes(std::string& bytes, std::size_t count);

  void StoreObject(CTypedObject* object);
  CTypedObject* LoadObject();
  CTypedObject* CreateObject();
  void SerializeDeeper(CTypedObject& object);
  std::uint32_t ClassToIndex(const char* name, bool& isNew);

  Mode mode_ = Load;
  void* data_ = nullptr;
  int version_ = 1;
  std::uint16_t sum_ = 0;  ///< of all bytes before `summed_`
  std::unique_ptr<CFile> file_;
  std::unique_ptr<ArchivePrivate::ObjectTable> objects_;
  std::unique_ptr<ArchivePrivate::ManagedLoadStorage> managed_;
  std::vector<std::string> classNames_;
  unsigned depth_ = 0;
  unsigned depthLimit_ = DEFAULT_DEPTH_LIMIT;

  // The block: bytes stored and not yet written, and room for more; or bytes read ahead.
  std::unique_ptr<unsigned char[]> block_;
  unsigned char* begin_ = nullptr;
  unsigned char* summed_ = nullptr;
  unsigned char* next_ = nullptr;
  unsigned char* end_ = nullptr;
  std::uint64_t blockPosition_ = 0;  ///< of `begin_` in the file
  bool isPositionLost_ = false;      ///< a write failed, perhaps in the middle
};

// Implementation details follow.

template <class T>
void Archive::TransferValue(T& value) {
  if (Room() < sizeof value) {
    Transfer(static_cast<void*>(&value), sizeof value);
    return;
  }
  if (mode_ == Store) {
    std::memcpy(next_, &value, sizeof value);
  } else {
    std::memcpy(&value, next_, sizeof value);
  }
  next_ += sizeof value;
}

inline void Archive::Transfer(bool& value) {
  unsigned char byte = value ? 1 : 0;
  TransferValue(byte);
  value = byte != 0;
}

}  // namespace shr
