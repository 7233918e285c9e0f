// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "shared/diagnostics/Exception.h"

#include "shared/diagnostics/SystemInfo.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/Threads.h"

namespace shr {
namespace {

constexpr const char* INTERNAL_ERROR_TEXT =
    "Internal Error.  An internal inconsistency has been detected.\n"
    "Please report this fault to the maintainers of the Shared library.";
constexpr const char* USER_ABORT_TEXT = "User canceled the operation";
constexpr const char* CLIPPER_ERROR_TEXT =
    "Internal Error in General Polygon Clipping library.\n"
    "Please report this fault to the maintainers of the Shared library.";
constexpr const wchar_t* CLIPPER_MODULE = L"GPC Library";

GString Describe(const wchar_t* format, va_list arguments) {
  GString description;
  if (!description.FormatStringVA(format, arguments)) description = format;
  return description;
}

}  // namespace

Exception::Exception(const GString& module, const GString& sourceFile, int line,
                     const GString& description)
    : threadId_(platform::CurrentThreadId()),
      sourceLine_(line),
      module_(module),
      sourceFile_(sourceFile),
      description_(description) {}

InternalErrorException::InternalErrorException(const GString& module, const GString& sourceFile,
                                               int line)
    : Exception(module, sourceFile, line, GString(INTERNAL_ERROR_TEXT)) {}

UserAbortException::UserAbortException(const GString& module, const GString& sourceFile, int line)
    : Exception(module, sourceFile, line, GString(USER_ABORT_TEXT)) {}

GPCException::GPCException(const GString& sourceFile, int line)
    : Exception(GString(CLIPPER_MODULE), sourceFile, line, GString(CLIPPER_ERROR_TEXT)) {}

IError::~IError() = default;

void IError::ErrorMsg(const GString& title, const GString& message, const GString& module,
                      const GString& sourceFile, int line) const {
  GString text;
  const bool fits = text.FormatString(L"%s [Module %s, File %s, Line %d]", message.c_str(),
                                      module.c_str(), sourceFile.c_str(), line);
  ErrorMsg(title, fits ? text : message);
}

void ThrowErrorImpl(const wchar_t* sourceFile, int line, const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const GString description = Describe(format, arguments);
  va_end(arguments);
  throw Exception(GString(SHARED_MODULE), GString(sourceFile), line, description);
}

void ThrowSharedError(const wchar_t* module, const wchar_t* sourceFile, int line,
                      const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const GString description = Describe(format, arguments);
  va_end(arguments);
  throw Exception(GString(module), GString(sourceFile), line, description);
}

void ThrowSharedErrorVA(const wchar_t* module, const wchar_t* sourceFile, int line,
                        const wchar_t* format, va_list arguments) {
  throw Exception(GString(module), GString(sourceFile), line, Describe(format, arguments));
}

void ThrowInternalError(const wchar_t* module, const wchar_t* sourceFile, int line) {
  const InternalErrorException error{GString(module), GString(sourceFile), line};
  // A copy, because the handler may install another one while it runs.
  const CSystemInfo::InternalErrorHandlerType handler = CSystemInfo::InternalErrorHandler();
  handler(error);
  throw InternalErrorException(error);
}

}  // namespace shr
