// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: what a text is not made of; what a temporary text does not give.

#include "shared/text/GString.h"

namespace {

void noPointerIsNoText() {
#ifdef MUST_NOT_COMPILE  // deleted function|deleted constructor
  const shr::GString text(nullptr);
#else
  const shr::GString text(L"");
#endif
}

void aNumberIsNoText() {
#ifdef MUST_NOT_COMPILE  // could not convert|no viable conversion|conversion from|no matching
                         // function
  const shr::GString text = 7;
#else
  const shr::GString text = L"7";
#endif
}

void zeroIsNoText() {
#ifdef MUST_NOT_COMPILE  // ambiguous
  const shr::GString text(0);
#else
  const shr::GString text(0, L' ');
#endif
}

void zeroIsNotAssigned(shr::GString& text) {
#ifdef MUST_NOT_COMPILE  // ambiguous
  text = 0;
#else
  text = L'0';
#endif
}

void noPointerIsNotLookedFor(const shr::GString& text) {
#ifdef MUST_NOT_COMPILE  // deleted|no matching
  (void)text.find(nullptr);
#else
  (void)text.find(L"x");
#endif
}

void aTemporaryTextGivesNoReferenceToChange() {
#ifdef MUST_NOT_COMPILE  // rvalue|discards qualifiers|cannot bind|to a temporary|no viable
                         // conversion
  std::wstring& inside = shr::GString(L"x");
#else
  std::wstring&& inside = shr::GString(L"x");
#endif
}

void aTextFromUtf8IsNotThrownAway() {
#ifdef MUST_NOT_COMPILE  // nodiscard|unused
  shr::GString::FromUtf8("x");
#else
  const shr::GString text = shr::GString::FromUtf8("x");
#endif
}

}  // namespace
