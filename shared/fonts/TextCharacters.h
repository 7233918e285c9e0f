// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// What laying out must know of characters: which need neither shaping nor ordering, which have a
/// direction, which belong to the character before, and which show nothing.
///
/// Facts of the Unicode Standard 14.0, coarse where a range of characters is of one kind nearly
/// throughout. Threads: any.

#pragma once

#include <cstddef>
#include <string_view>

namespace shr {

/// Takes one character off the front of `text`, which is not empty; an unpaired surrogate is one.
char32_t NextCharacter(std::wstring_view& text);

/// Returns true for control characters: nothing is drawn for them, whatever the face has.
bool IsControl(char32_t character);

/// Returns true for characters that only tell how others are laid out (Default_Ignorable of
/// Unicode): nothing is drawn for them where the face lacks them.
bool IsFormatMark(char32_t character);

/// Returns true when no face need be looked for: for controls, marks of format and what is no
/// character (surrogates, U+FFFE and the like).
bool NeedsNoFace(char32_t character);

/// Returns true for characters that stand alone at their own advance in text from left to right:
/// no neighbour changes their shape or place. Text of these alone is never shaped nor ordered.
bool IsSimple(char32_t character);

/// Returns true for blanks, signs and digits that all scripts share.
bool IsShared(char32_t character);

/// The direction that a character alone gives a text.
enum class CharacterDirection : unsigned char { None, LeftToRight, RightToLeft };

/// Returns the direction of a letter; signs, blanks, digits and marks have none.
CharacterDirection DirectionOf(char32_t character);

/// Returns true for marks, which combine with the character before them.
bool IsMark(char32_t character);

/// Returns true when the character at `place` belongs to the one before it. Requires: `place` is
/// less than the length of the text.
bool IsInsideCluster(std::wstring_view text, std::size_t place);

/// Returns the length in code units of the first cluster of `text`, which is not empty: a character
/// with the marks, variation selectors and emoji modifiers behind it, and what a zero width joiner
/// ties to it. Clusters end after 64 characters at the latest. Cost: O(length of the cluster).
std::size_t ClusterLength(std::wstring_view text);

}  // namespace shr
