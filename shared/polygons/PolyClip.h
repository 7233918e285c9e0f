// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The former place of shared/polygons/lines/PolyClip.h, for programs that include it here.

#pragma once

#include "shared/polygons/lines/PolyClip.h"
