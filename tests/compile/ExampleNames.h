// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the examples in the comments of headers take as given. header_examples.py puts the example
/// of the header `Name.h` into the namespace `shr::example::in_Name`, in which a given of another
/// meaning is declared.

#pragma once

#include <cstdint>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shared/archive/Archive.h"
#include "shared/archive/ArchiveTemplates.h"
#include "shared/archive/TypedObject.h"
#include "shared/color/Color4b.h"
#include "shared/color/MedianCut.h"
#include "shared/commands/CommandStack.h"
#include "shared/commands/SimpleCommand.h"
#include "shared/geometry/Box2.h"
#include "shared/geometry/Vec3.h"
#include "shared/mathtext/RecordingTextIF.h"
#include "shared/numerics/registration/ImageRegistration.h"
#include "shared/polygons/GPolygon2d.h"
#include "shared/polygons/GPolyline.h"
#include "shared/text/GString.h"

namespace shr::example {

inline GString path(L"map.txt");
inline std::vector<Vec2d> points;
inline std::vector<unsigned int> counts;
inline Vec2d point;
inline Box2d view;
inline GPolyline river;

/// A layer of the reader's document and commands on it.
struct CLayer : TypedObject<CLayer> {
  GString name;
  int color = 0;
};
inline CLayer layer;
inline CommandStack stack(10);
struct Rename : SimpleCommand {
  Rename(CLayer&, GString);
  StatusCode DoImpl() override;
  StatusCode UndoImpl() override;
};
struct Recolor : SimpleCommand {
  Recolor(CLayer&, Color4b);
  StatusCode DoImpl() override;
  StatusCode UndoImpl() override;
};
struct Move : SimpleCommand {
  Move();
  StatusCode DoImpl() override;
  StatusCode UndoImpl() override;
};

/// What the reader does with what the library gave.
struct Anything {
  template <class... Values>
  bool operator()(const Values&...) const {
    return true;
  }
};
inline constexpr Anything Draw, Fill, Redraw, Report, SaveDocument, SetTitle, Use, UseBuiltInColors,
    UseLayer, Warn, Work, Write;
std::vector<GPolygon2d> ReadCountries();

}  // namespace shr::example

namespace shr::example::in_ArchiveTemplates {
struct CMap {
  void Serialize(Archive& archive);
  std::vector<double> depths_;
  std::vector<std::shared_ptr<CLayer>> layers_;
  std::map<int, GString> names_;
};
}  // namespace shr::example::in_ArchiveTemplates

namespace shr::example::in_Box3 {
inline std::vector<Vec3d> points;
}

namespace shr::example::in_Plane {
inline Vec3d point;
}

namespace shr::example::in_Command {
inline CLayer layer_;
inline GString name_;
}  // namespace shr::example::in_Command

namespace shr::example::in_IProgress {
inline GString label_;
inline std::uint64_t total_ = 0;
}  // namespace shr::example::in_IProgress

namespace shr::example::in_Context {
void Tell(const GString& error);
}

namespace shr::example::in_RecordingTextIF {
void Replay(const MTDrawCall& call);
}

namespace shr::example::in_MedianCut {
inline struct Image {
} image;
std::vector<ColorCount> CountColors(const Image& image);
}  // namespace shr::example::in_MedianCut

namespace shr::example::in_PolylineCut {
inline std::vector<GPolyline> rivers;
inline GPolygon2d country;
}  // namespace shr::example::in_PolylineCut

namespace shr::example::in_ImageRegistration {
inline RPoints from, to;
}

namespace shr::example::in_ImageWarp {
inline RPoints from, to;
}

namespace shr::example::in_InverseDistanceSquared {
inline RPoints from, to;
}

namespace shr::example::in_InverseWarp {
inline CImageRegistration registration;
inline RPoint onMap;
}  // namespace shr::example::in_InverseWarp

namespace shr::example::in_PolynomialWarps {
inline RPoints from, to;
}

namespace shr::example::in_PortableMath {
inline std::vector<double> values;
}

namespace shr::example::in_RadialBasisFunction {
inline RPoints from, to, points, results;
}

namespace shr::example::in_RegistrationQuality {
inline CImageRegistration registration;
inline RPoints from, to;
}  // namespace shr::example::in_RegistrationQuality

namespace shr::example::in_SimpleWarps {
inline RPoints from, to;
}

namespace shr::example::in_TextDetection {
inline std::string_view head;
}

namespace shr::example::in_TypedObject {
inline GString name_;
inline std::vector<Vec2d> points_;
inline std::vector<double> cells_;
}  // namespace shr::example::in_TypedObject
