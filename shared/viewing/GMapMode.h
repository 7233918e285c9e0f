// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `GMapMode`, the mapping modes of Windows GDI from logical to device coordinates, without a
/// device context.
///
///     GMapMode mode(true);
///     // MM_LOMETRIC: 200 x 100 mm are 800 x 400 pixels.
///     mode.SetMapMode(2, 200.0, 100.0, 800.0, 400.0);
///     mode.SetViewportOrgEx(0.0, 400.0, nullptr);
///     POINT corner{1000, 500};                 // tenths of millimetres, y up
///     mode.LPtoDP(&corner, 1);                 // (400, 200)
///
/// To fit one rectangle into another take shared/viewing/RectTransformer.h. Threads: const members
/// may be called on several threads at once.

#pragma once

#include <span>

#include "shared/Export.h"
#include "shared/geometry/Vec2.h"

struct tagPOINT;
struct tagSIZE;

namespace shr {

/// A mode, and origins and extents of the window (logical) and the viewport (device). In the
/// beginning the mode is 1, the origins are 0 and the extents 1, so that nothing changes.
///
/// The functions are those of GDI without the context, with `double` coordinates; where they hand
/// out a `POINT` or `SIZE`, the pointer may be null. All whole numbers are made by rounding halves
/// away from zero; they stop at the ends of 32 bits, and what is no number becomes 0. Other than a
/// context, this takes extents in every mode. An extent that is 0 along an axis (after rounding),
/// infinite or no number is not taken: both of its numbers stay as they were, so that every mapping
/// has an inverse.
class SHARED_API GMapMode {
public:
  /// With `roundToIntegers`, extents are rounded to whole numbers whenever they change.
  explicit GMapMode(bool roundToIntegers) : roundToIntegers_(roundToIntegers) {}

  int GetMapMode() const { return mapMode_; }

  /// Sets the mode and returns the previous one. The modes MM_TEXT (1) to MM_ISOTROPIC (7) set the
  /// extents as well, from the size of the device: 1 makes all of them 1; the others make the
  /// viewport (width, -height), so that y points up, and the window the size in tenths (2, 7) or
  /// hundredths (3) of millimetres, hundredths (4) or thousandths (5) of inches, or twips (6).
  /// Any other mode, such as MM_ANISOTROPIC (8), keeps the extents.
  int SetMapMode(int mode, double widthInMillimeters, double heightInMillimeters,
                 double widthInPixels, double heightInPixels);

  // Each stores the previous or current value in the last argument and returns true. In mode 7 new
  // extents are followed by `AdjustViewportExt`.

  bool SetWindowOrgEx(double x, double y, tagPOINT* previous);
  bool GetWindowOrgEx(tagPOINT* origin) const;
  bool SetWindowExtEx(double x, double y, tagSIZE* previous);
  bool GetWindowExtEx(tagSIZE* extent) const;
  bool SetViewportOrgEx(double x, double y, tagPOINT* previous);
  bool GetViewportOrgEx(tagPOINT* origin) const;
  bool SetViewportExtEx(double x, double y, tagSIZE* previous);
  bool GetViewportExtEx(tagSIZE* extent) const;

  /// Shrinks the viewport's extent along the axis that is scaled more, keeping its sign, so that
  /// both axes are scaled alike. Degenerate: nothing changes where rounding would leave 0.
  void AdjustViewportExt();

  /// Convert points in place, logical to device and back. Each coordinate becomes (value - origin)
  /// * (extent there / extent here) + origin there, rounded. Return true, or false when the pointer
  /// is null or the count negative.
  bool LPtoDP(tagPOINT* points, int count) const;
  bool DPtoLP(tagPOINT* points, int count) const;
  void LPtoDP(std::span<tagPOINT> points) const;
  void DPtoLP(std::span<tagPOINT> points) const;

private:
  struct System {
    Vec2d origin;
    Vec2d extent{1.0, 1.0};
  };

  bool SetExtent(System& system, const Vec2d& extent, tagSIZE* previous);
  void ChangeExtent(System& system, const Vec2d& extent) const;
  double Rounded(double extent) const;
  static void Convert(std::span<tagPOINT> points, const System& from, const System& to);

  bool roundToIntegers_;
  int mapMode_ = 1;
  System viewport_;
  System window_;
};

}  // namespace shr
