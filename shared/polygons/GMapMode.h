// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// The former place of shared/viewing/GMapMode.h, for programs that include it here.

#pragma once

#include "shared/viewing/GMapMode.h"
