// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CMTRecordingTextIF`, a text interface that keeps what is drawn: for tests, and for applications
/// that draw elsewhere or later.
///
///     CMTRecordingTextIF record;                      // measures by the faces of the system
///     label->DrawUsingTextIF(record, Vec2d(10, 20));
///     for (const MTDrawCall& call : record.GetCalls()) Replay(call);
///
/// With fixed metrics it measures every character alike and asks for no face:
///
///     CMTRecordingTextIF fixed{MTFixedMetrics()};
///     const double width = fixed.GetTextExtent(L"abc");   // 1.5 heights
///
/// Threads: one thread an interface.

#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "shared/Export.h"
#include "shared/mathtext/FaceTextIF.h"
#include "shared/text/GString.h"

namespace shr {

/// Metrics of all text, in em.
struct MTFixedMetrics {
  double advance = 0.5;  ///< of each character but controls; also the average width
  MTLineMetrics line = {0.8, 0.2, 0.1, -0.1, 0.05, 0.25, 0.05};
};

/// A run of text or a line that was drawn.
struct MTDrawCall {
  enum class Kind { Text, Line };

  Kind kind = Kind::Text;
  GString text;          ///< of a run
  Vec2d from;            ///< the beginning on the baseline, or of the line; turned already
  Vec2d to;              ///< the end on the baseline, or of the line; turned already
  double thickness = 0;  ///< of a line
  double rotation = 0;   ///< degrees counter-clockwise by which a run is turned about `from`
  MTAttributes attributes;
};

class SHARED_API CMTRecordingTextIF : public CMTFaceTextIF {
public:
  /// Measures by the faces of the system.
  CMTRecordingTextIF();
  explicit CMTRecordingTextIF(const MTFixedMetrics& metrics);
  ~CMTRecordingTextIF() override;

  MTLineMetrics GetLineMetrics() override;
  double GetTextExtent(std::wstring_view text) override;
  /// With fixed metrics every character but blanks and controls fills its box.
  Box2d GetTextBounds(std::wstring_view text) override;
  double GetAverageCharWidth() override;
  void DrawString(const Vec2d& baselineBegin, std::wstring_view text) override;
  void DrawLine(const Vec2d& from, const Vec2d& to, double thickness) override;

  /// Returns what was drawn since `Clear`, in order.
  const std::vector<MTDrawCall>& GetCalls() const noexcept { return calls_; }
  void Clear() noexcept { calls_.clear(); }

private:
  std::optional<MTFixedMetrics> fixed_;
  std::vector<MTDrawCall> calls_;
};

}  // namespace shr
