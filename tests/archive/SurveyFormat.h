// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The worked example of docs/archive-format.md: a file format with versions.

#pragma once

#include <memory>
#include <vector>

#include "shared/archive/ArchiveTemplates.h"
#include "shared/archive/TypedObject.h"
#include "shared/color/Color4b.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/geometry/Vec2.h"
#include "shared/text/GString.h"

namespace shr::test {

inline constexpr unsigned SURVEY_MAGIC = 0x59565253;  // "SRVY"
inline constexpr int SURVEY_VERSION = 2;

// [survey]
class CSurvey : public TypedObject<CSurvey> {
public:
  void Serialize(Archive& archive) override {
    archive(name, points);
    if (archive.GetVersion() >= 2) archive(color);  // files of version 1 end before it
  }
  GString name;
  std::vector<Vec2f> points;
  Color4b color = Color4b::Red;
};

/// Stores in the archive's version, loads every version up to the newest.
inline void TransferSurvey(Archive& archive, std::shared_ptr<CSurvey>& survey) {
  unsigned magic = SURVEY_MAGIC;
  int version = archive.GetVersion();
  archive(magic, version);
  if (magic != SURVEY_MAGIC || version < 1 || version > SURVEY_VERSION) {
    ThrowErrorImpl(L"SurveyFormat", __LINE__, L"'%s' is no survey that this version can read.",
                   archive.GetFilename().c_str());
  }
  archive.SetVersion(version);
  archive(survey);
  archive.SyncCheck();
}
// [end]

}  // namespace shr::test
