// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// A page of every command of math text, and of many scripts.

#pragma once

#include "examples/mathtext/LabelPicture.h"
#include "shared/text/GString.h"

namespace mathtext {

/// Writes gallery.html and two pictures of each sample, NAME-text.svg and NAME-outlines.svg, into
/// `folder`, which is made. The style counts but for its mode. Errors: the library's exceptions;
/// then nothing is changed.
void WriteGallery(const GString& folder, const LabelStyle& style);

/// Writes the pictures of the commands alone, NAME.svg in outlines.
void WriteCommandPictures(const GString& folder, const LabelStyle& style);

}  // namespace mathtext
