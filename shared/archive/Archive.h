// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `Archive`, the library's binary stream: one `Serialize` routine of a class both stores and loads
/// its fields.
///
/// The stream is the plain sequence of the values transferred, little endian, the same bytes on
/// every target (docs/archive-format.md). With shared/archive/ArchiveTemplates.h an archive takes
/// containers, enumerations, pointers and handles in the same way as values; docs/archives.md shows
/// the use.
///
///     Archive archive(path, Archive::Store);
///     archive(name, depth, points);   // std::wstring, double, std::vector<Vec2d>
///     archive.SyncCheck();
///     archive.Close();                // puts the file in its place
///
/// Threads: one thread an archive.

#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include "shared/Export.h"

namespace shr {

class Archive;
class CFile;
class Color4b;
class CReplacementFile;
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

class Level;
struct LoadAccess;
class ObjectTable;

/// Makes the first handle to an object, by its own class.
using Sharer = std::shared_ptr<CTypedObject> (*)(CTypedObject* object);

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

  /// Returns how many handles to `object` there are, the storage's own included; 0 when it has
  /// none.
  long UseCount(CTypedObject* object) const;
  /// Has the first handle to `object` made by `sharer`.
  void Expect(CTypedObject* object, Sharer sharer);

private:
  struct Handles;
  std::unique_ptr<Handles> handles_;
};

/// True for the types that `Archive::Transfer` takes by overloads of its own.
template <class T, class... Own>
inline constexpr bool IS_ANY_OF = (std::is_convertible_v<T&, Own&> || ...);
template <class T>
concept HasOwnTransfer =
    IS_ANY_OF<T, bool, char, unsigned char, short, unsigned short, int, unsigned int, long,
              unsigned long, float, double, Color4b, Vec2<float>, Vec2<double>, Vec3<int>,
              Vec3<double>, Quat4<double>, Box2<float>, Box2<double>, Box3<double>, Mat4<double>,
              std::string, std::wstring>;

/// Integers of 64 bits, and those whose size differs between the targets.
template <class T>
inline constexpr bool IS_WIDE_INTEGER = std::is_same_v<T, long> ||
                                        std::is_same_v<T, unsigned long> ||
                                        (std::is_integral_v<T> && sizeof(T) == 8);

/// Transfers by the functions of shared/archive/ArchiveTemplates.h.
template <class T>
void TransferAny(Archive& archive, T& value) {
  static_assert(!IS_WIDE_INTEGER<T>,
                "integers like std::size_t differ between the targets: use Transfer64 for 8 bytes, "
                "or an int for 4");
  Transfer(archive, value);  // needs shared/archive/ArchiveTemplates.h
}

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
/// no more use than to be asked for `GetLoadedObjects`, `DiscardLoaded` and closed.
///
/// A file on disk is stored aside and put in its place by `Close`, so that a save that fails at any
/// point leaves the old file as it was (shared/files/ReplacementFile.h). What is no regular file,
/// such as a device or a pipe, is written in place.
///
/// Depth: values and objects may be nested as deep as the stack of the running thread allows; what
/// is deeper is refused with an error while a rest of the stack is left, a quarter of it but at
/// most 256 KiB. On a stack that the system does not know, such as that of a coroutine, 32 KiB
/// below the outermost transfer are used.
class SHARED_API Archive {
public:
  enum Mode : std::int32_t { Load = 0, Store = 1 };

  /// No file; mode `Load`, version 1.
  Archive();
  /// Opens `path` as `OpenFile` does.
  Archive(const GString& path, Mode mode);
  /// Closes the file as `Close` does unless a transfer failed or an exception is on its way, which
  /// `Abandon` it. A failure has nowhere to go: a program that must know calls `Close`.
  ~Archive();
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;

  /// Begins to store a file, which is new or takes the place of the old one when the archive is
  /// closed, or opens an existing one to load, which nobody else may write meanwhile.
  /// Errors: "Unable to open '%s'.\n%s"; internal errors for an empty path and an open archive.
  void OpenFile(const GString& path, Mode mode);
  /// Opens an empty file in memory to store.
  void OpenMem();
  /// Opens bytes in memory to load, which stay the caller's and are not copied.
  /// Errors: "Unable to open '%s'.\n%s" from 4 GiB on.
  void OpenMem(const unsigned char* data, std::uint64_t size);

  /// Closes the file and forgets sum, objects and class names; version and user data stay. What was
  /// stored takes the place of the old file. The archive is closed also when this throws.
  /// Errors: "Unable to write '%s'.\n%s" or "Unable to close '%s'.\n%s" when the last bytes do not
  /// reach the file, or when an object, a value or a container failed to be stored as a whole; the
  /// old file is then as it was. Internal error with no file.
  void Close();
  /// Closes without putting a stored file in its place: the old one stays, or none. Nothing to do
  /// with no file.
  void Abandon() noexcept;

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

  // Values, as they lie in memory.

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
  /// The same. `std::size_t` is this type on some targets: use `Transfer64` for it.
  void Transfer(unsigned long& value);
  /// Integers of 64 bits, `std::int64_t`, `std::uint64_t` and `std::size_t` among them: 8 bytes on
  /// every target. They have no overload of `Transfer`, for their types differ between the targets.
  template <std::integral T>
  requires(sizeof(T) == 8) void Transfer64(T& value) { TransferValue(value); }
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

  // Everything else, by shared/archive/ArchiveTemplates.h.

  /// Transfers whatever `Transfer(archive, value)` takes.
  template <class T>
  requires(!ArchivePrivate::HasOwnTransfer<T>) void Transfer(T& value) {
    ArchivePrivate::TransferAny(*this, value);
  }
  /// Transfers all values in order: the one spelling for values, containers and references.
  template <class... Values>
  Archive& operator()(Values&... values) {
    (ArchivePrivate::TransferAny(*this, values), ...);
    return *this;
  }

  /// Stores or loads a reference. The first reference to an object carries its class name and
  /// fields, later ones are its number in the stream, and loading returns the one object for all.
  /// Null is 0. The caller owns what was loaded.
  ///
  /// Laws: an object that refers to itself, also through others, loads as such a cycle.
  /// Errors: when loading, "Unable to create object of class %s" for a class that has no record, no
  /// creator or is not derived from `CTypedObject`. When storing, "An object of type %s cannot be
  /// stored as class %s." when loading that class would give another one, because the object's
  /// class has no record of its own or shares its name: to know, an object of each class is made
  /// when the class is first stored. "Objects in '%s' are nested more than %u levels deep." when
  /// one object's fields lead to another's, and so on, beyond what the stack allows or the depth
  /// limit: programs with long chains transfer all objects first and their links afterwards.
  void TransferObject(CTypedObject*& object);

  /// Stores a check of all bytes before it, or loads and compares one.
  /// Errors: "File '%s' cannot be read because the file is damaged near offset 0x%08x.  Computed
  /// CRC=0x%04x, File CRC=0x%04x\n".
  void SyncCheck();

  /// How many objects may be within each other's `Serialize` at a time; at first as many as the
  /// stack allows.
  static constexpr unsigned DEFAULT_DEPTH_LIMIT = std::numeric_limits<unsigned>::max();
  void SetDepthLimit(unsigned levels) noexcept { depthLimit_ = levels; }

  /// Returns the objects created since opening, in the order of their first reference, those whose
  /// loading failed included. After a failure they may refer to each other in any unfinished way;
  /// `DiscardLoaded` destroys them.
  std::vector<CTypedObject*> GetLoadedObjects() const;

  /// Destroys what was loaded since opening and has no owner in the program: objects that were
  /// loaded by plain pointers, and those that no handle outside of the archive holds. For the end
  /// of a failed load; with handles alone closing the archive does as much.
  ///
  /// None is destroyed twice: not those that the program has destroyed before, nor those that
  /// others destroy in their destructors. Requires: the program has let go of objects that will
  /// destroy others that plain pointers loaded. All these pointers are invalid afterwards.
  void DiscardLoaded() noexcept;

  /// Returns the owner of shared handles to loaded objects, emptied by `Close`.
  ArchivePrivate::ManagedLoadStorage& GetManagedLoadStorage() noexcept { return *managed_; }

  /// Transfers the number of elements that follow as an unsigned 32-bit integer.
  /// Errors: "Unable to write '%s'.\n%s" with "out of range" for a count that does not fit.
  void TransferCount(std::size_t& count);

  /// When loading, throws the error of a short read unless `count` more bytes may be there. Call it
  /// before taking memory for a count that was read. Files that do not tell their length, such as
  /// pipes, may always hold more.
  void RequireBytes(std::uint64_t count);

  /// Returns how many bytes were transferred since opening.
  std::uint64_t GetPosition() const noexcept {
    return blockPosition_ + static_cast<std::uint64_t>(next_ - begin_);
  }

  /// Containers may hold this many elements without any bytes in one stream, all together.
  static constexpr unsigned MOST_WITHOUT_BYTES = 1u << 20;
  /// Counts an element that took no bytes. Errors: that of a short read or an unwritable value when
  /// there are too many.
  void CountWithoutBytes();

  /// Throws the error for an object whose class does not fit where it was found.
  [[noreturn]] void ThrowUnexpectedClass(const CTypedObject& object) const;
  /// Throws the error for an object that two owners of the kind of `std::unique_ptr` refer to, or
  /// one of them and a shared handle.
  [[noreturn]] void ThrowOwnedTwice(const CTypedObject& object) const;
  /// Throws "Unrecoverable error reading archive.", for a value that cannot be.
  [[noreturn]] void ThrowUnreadable() const;

private:
  friend class ArchivePrivate::Level;
  friend struct ArchivePrivate::LoadAccess;

  template <class T>
  void TransferValue(T& value);

  void Reset() noexcept;
  void Open(std::unique_ptr<CFile> file, Mode mode);
  bool IsOpen() const noexcept { return file_ != nullptr || replacement_ != nullptr; }
  bool IsMemory() const noexcept;
  void ForgetFile() noexcept;
  bool IsUnwinding() const noexcept;
  void Finish();
  void CheckIsClosed(int line) const;
  std::wstring GetDisplayName() const;

  std::size_t Room() const noexcept { return static_cast<std::size_t>(end_ - next_); }
  std::uint16_t TakeSum() noexcept;

  void EnterLevel();
  [[noreturn]] void ThrowTooDeep(unsigned levels);

  void WriteOut(const unsigned char* bytes, std::size_t count);
  void FlushBlock();
  bool RefillBlock();
  void WritePast(const unsigned char* bytes, std::size_t count);
  std::size_t ReadSome(unsigned char* bytes, std::size_t count);
  void MoveFromBlock(unsigned char* bytes, std::size_t count);
  [[noreturn]] void ThrowShortRead();
  [[noreturn]] void ThrowUnwritable(int line);

  std::uint32_t LoadCount();
  void StoreCount(std::size_t count);
  void StoreText(const char* text, std::size_t size);
  void StoreText(const wchar_t* text, std::size_t size);
  void LoadBytes(std::string& bytes, std::size_t count);

  void StoreObject(CTypedObject* object);
  CTypedObject* LoadObject(bool isHandle, bool isOwner, ArchivePrivate::Sharer sharer);
  CTypedObject* CreateObject(ArchivePrivate::Sharer& sharer);
  void SerializeDeeper(CTypedObject& object);
  void CheckClass(const CTypedObject& object, const char* name);
  void ReleaseLoaded(bool isDiscarded, bool isFailed) noexcept;
  std::uint32_t ClassToIndex(const char* name, bool& isNew);

  Mode mode_ = Load;
  void* data_ = nullptr;
  int version_ = 1;
  std::uint16_t sum_ = 0;  ///< of all bytes before `summed_`
  std::unique_ptr<CFile> file_;
  std::unique_ptr<CReplacementFile> replacement_;  ///< in place of `file_` for a file stored aside
  std::unique_ptr<ArchivePrivate::ObjectTable> objects_;
  std::unique_ptr<ArchivePrivate::ManagedLoadStorage> managed_;
  std::vector<std::string> classNames_;
  std::vector<const std::type_info*> classTypes_;  ///< of `classNames_`, when storing
  unsigned depth_ = 0;
  unsigned depthLimit_ = DEFAULT_DEPTH_LIMIT;
  unsigned levels_ = 0;
  std::uintptr_t stackFloor_ = 0;  ///< what the outermost level found
  unsigned withoutBytes_ = 0;
  int exceptionsAtOpen_ = 0;
  bool isCut_ = false;      ///< something was not stored as a whole
  bool hasFailed_ = false;  ///< a write failed, though the caller may have repeated it

  // The block: bytes stored and not yet written, and room for more; or bytes read ahead.
  std::unique_ptr<unsigned char[]> block_;
  unsigned char* begin_ = nullptr;
  unsigned char* summed_ = nullptr;
  unsigned char* next_ = nullptr;
  unsigned char* end_ = nullptr;
  std::uint64_t blockPosition_ = 0;  ///< of `begin_` in the file
  bool isPositionLost_ = false;      ///< a write failed, perhaps in the middle
};

namespace ArchivePrivate {

/// A value, a container or an object within others, for as long as it is transferred: asks for the
/// stack that is left and notes whether it was transferred as a whole.
class Level {
public:
  explicit Level(Archive& archive) : archive_(archive) { archive_.EnterLevel(); }
  ~Level() {
    --archive_.levels_;
    if (!isDone_) archive_.isCut_ = true;
  }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;

  void Done() noexcept { isDone_ = true; }

private:
  Archive& archive_;
  bool isDone_ = false;
};

/// What the handles of shared/archive/ArchiveTemplates.h need beyond `TransferObject`.
struct SHARED_API LoadAccess {
  /// Loads a reference for a shared handle. The object, when new, is owned from the start by the
  /// archive's storage; its handle is made by its own class or else by `sharer`, if any.
  static CTypedObject* LoadShared(Archive& archive, Sharer sharer);
  /// Loads a reference for the one owner of a new object; until `Release` the archive owns it.
  static CTypedObject* LoadOwned(Archive& archive);
  static void Release(Archive& archive, const CTypedObject* object) noexcept;
};

}  // namespace ArchivePrivate

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
