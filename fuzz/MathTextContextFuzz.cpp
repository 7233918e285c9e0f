// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Math text: any text becomes elements or an error with a message, and the text interface is as it
// was. Of elements, lengths are finite, what is drawn lies in the internal box and a copy draws the
// same. The first byte has the options.

#include "shared/mathtext/Context.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "shared/mathtext/RecordingTextIF.h"

namespace {

void Check(bool holds) {
  if (!holds) std::abort();
}

bool IsInside(const shr::Box2d& box, const shr::Vec2d& point) {
  const double slack = 1e-9 * (1 + std::abs(box.xMin()) + std::abs(box.xMax()) +
                               std::abs(box.yMin()) + std::abs(box.yMax()));
  shr::Box2d wider = box;
  wider.Inflate(slack, slack);
  return wider.Contains(point);
}

void CheckElement(shr::CMTRecordingTextIF& record, shr::CMTElement& element) {
  const shr::Box2d box = element.GetInternalBBox(record);
  Check(box.Contains(element.GetGenericBBox(record)));
  Check(std::isfinite(box.xMin()) && std::isfinite(box.yMin()));
  Check(std::isfinite(box.xMax()) && std::isfinite(box.yMax()));
  element.InternalDraw(record, shr::Vec2d::ZERO);
  const std::size_t count = record.GetCalls().size();
  element.Clone()->InternalDraw(record, shr::Vec2d::ZERO);
  Check(record.GetCalls().size() == 2 * count);
  for (std::size_t i = 0; i < count; ++i) {
    const shr::MTDrawCall& call = record.GetCalls()[i];
    const shr::MTDrawCall& copy = record.GetCalls()[i + count];
    Check(IsInside(box, call.from) && IsInside(box, call.to));
    Check(call.text == copy.text && call.from == copy.from && call.to == copy.to);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  shr::CMTRecordingTextIF record{shr::MTFixedMetrics()};
  const auto before = record.ShareAttributes();
  shr::CMTContext context(record, 10);
  context.SetOptions(data[0] & 7);
  context.SetClock([] { return std::tm{}; });
  const auto text =
      shr::GString::FromUtf8(std::string_view(reinterpret_cast<const char*>(data + 1), size - 1));
  std::shared_ptr<shr::CMTMultiLineElement> element;
  const bool isParsed = context.Parse(text, element) == shr::CMTContext::MT_SUCCESS;
  Check(isParsed == (element != nullptr) && (!isParsed || context.GetError().empty()));
  Check(isParsed || text.empty() || !context.GetError().empty());
  Check(record.ShareAttributes() == before && record.GetStateDepth() == 0);
  if (isParsed) CheckElement(record, *element);
  Check(record.ShareAttributes() == before && record.GetStateDepth() == 0);
  return 0;
}
