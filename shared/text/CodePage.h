// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

/// @file
/// Names for the numbers of the code pages that programs name most.
///
/// Every page that can be converted is listed in docs/code-pages.md; those that a user may choose
/// from are in shared/text/CodePageInfo.h.
///
///     std::string bytes = text.ToNarrow(CODE_PAGE_WINDOWS_1252);

#pragma once

#include <cstdint>

namespace shr {

/// The active ANSI page: the one in which narrow text is read where no page is named.
inline constexpr std::uint32_t CODE_PAGE_ANSI = 0;
/// The OEM page, that of consoles.
inline constexpr std::uint32_t CODE_PAGE_OEM = 1;

inline constexpr std::uint32_t CODE_PAGE_UTF8 = 65001;
inline constexpr std::uint32_t CODE_PAGE_UTF16LE = 1200;
inline constexpr std::uint32_t CODE_PAGE_UTF16BE = 1201;
inline constexpr std::uint32_t CODE_PAGE_UTF7 = 65000;

inline constexpr std::uint32_t CODE_PAGE_ASCII = 20127;
inline constexpr std::uint32_t CODE_PAGE_ISO_8859_1 = 28591;   ///< Western European
inline constexpr std::uint32_t CODE_PAGE_ISO_8859_15 = 28605;  ///< Western European with the euro
inline constexpr std::uint32_t CODE_PAGE_WINDOWS_1250 = 1250;  ///< Central European
inline constexpr std::uint32_t CODE_PAGE_WINDOWS_1251 = 1251;  ///< Cyrillic
inline constexpr std::uint32_t CODE_PAGE_WINDOWS_1252 = 1252;  ///< Western European
inline constexpr std::uint32_t CODE_PAGE_WINDOWS_1253 = 1253;  ///< Greek
inline constexpr std::uint32_t CODE_PAGE_WINDOWS_1254 = 1254;  ///< Turkish

inline constexpr std::uint32_t CODE_PAGE_SHIFT_JIS = 932;  ///< Japanese
inline constexpr std::uint32_t CODE_PAGE_GBK = 936;        ///< Chinese, simplified
inline constexpr std::uint32_t CODE_PAGE_KOREAN = 949;
inline constexpr std::uint32_t CODE_PAGE_BIG5 = 950;       ///< Chinese, traditional
inline constexpr std::uint32_t CODE_PAGE_GB18030 = 54936;  ///< all of Unicode

}  // namespace shr
