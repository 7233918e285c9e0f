// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// `CTokenizer` reads comma-separated fields from wide text, one call a field.
///
/// White space (shared/text/WhiteSpace.h) ends an unquoted field as well as a comma does. Numbers
/// are read in one fixed syntax on both targets, whatever the locale of the process. For fields
/// behind any one delimiter of a string see `ParseToken` in shared/text/StringUtility.h.
///
///     CTokenizer fields(L"7, 2.5, \"a, b\"");
///     int count; double size; GString name;
///     bool good = fields.Parse(count) == CTokenizer::TokenOK &&
///                 fields.Parse(size) == CTokenizer::TokenOK &&
///                 fields.Parse(name, true) == CTokenizer::TokenOK;
///
/// Threads: an object may be used by one thread at a time.

#pragma once

#include "shared/Export.h"

namespace shr {

class GString;

/// A cursor into a terminated wide text.
///
/// Lifetime: the text is not copied; it must outlive the last call.
/// After `TokenError` the cursor is where it was before the call, so that the field can be read in
/// another way; a caller that goes on must read it as text. Output values change only with
/// `TokenOK`; a token is empty with every other status.
class SHARED_API CTokenizer {
public:
  enum Status {
    TokenOK = 0,     ///< A field was read.
    TokenEmpty = 1,  ///< The field is empty: a comma came first.
    TokenEnd = 2,    ///< There is no text, or only white space was left.
    TokenError = 3   ///< A quote is not closed, or the field does not begin with a number.
  };

  CTokenizer() = default;
  explicit CTokenizer(const wchar_t* source) : next_(source) {}

  /// Begins anew; null means no text.
  void SetSource(const wchar_t* source) { next_ = source; }

  /// Reads a field of text. With `allowQuotes` a field in double quotes may hold commas and white
  /// space, and two quotes in a row stand for one.
  Status Parse(GString& token, bool allowQuotes);

  /// Reads a field that begins with a decimal integer; text behind the number is ignored, and
  /// numbers out of range give the nearest value of `int`.
  Status Parse(int& value);

  /// Reads a field that begins with a real number in the syntax of `StringToDouble` or in
  /// hexadecimal ("0x1.8p3"); text behind the number is ignored. The value is correctly rounded;
  /// numbers out of range give an infinity.
  Status Parse(double& value);

  /// Reads a field that begins with a decimal integer and stores whether that is not zero.
  Status Parse(bool& value);

private:
  const wchar_t* next_ = nullptr;
};

}  // namespace shr
