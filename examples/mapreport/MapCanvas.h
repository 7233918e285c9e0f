// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What the layers of a map are drawn on and with.

#pragma once

#include "examples/mapreport/MapText.h"
#include "examples/mapreport/Markers.h"
#include "examples/mapreport/Projection.h"
#include "shared/plots/LabelPlacement.h"
#include "shared/plots/SvgWriter.h"

namespace mapreport {

using shr::LabelPlacer;
using shr::SvgWriter;

struct MapCanvas {
  /// Names stay inside `labelled`. The model and the projection must live as long as this.
  MapCanvas(const Model& model, const Projection& where, const Box2d& labelled)
      : projection(where), placer(labelled), text(svg, model.view) {}

  SvgWriter svg;
  const Projection& projection;
  LabelPlacer placer;  ///< keeps names off each other and off markers
  MarkerSheet markers;
  MapText text;
};

}  // namespace mapreport
