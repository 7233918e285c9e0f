// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: the five fields of each type; throw functions (literal format, arguments, oversized text,
// module); catching by type and by base across the library's border, raised by the library and by
// the program; the internal-error hook (default, returning, throwing, replaced while it runs,
// reset); the presenter's layout.

#include "shared/diagnostics/Exception.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "shared/diagnostics/SystemInfo.h"
#include "shared/diagnostics/ThrowError.h"
#include "shared/platform/Threads.h"

namespace shr {
namespace {

template <typename Action>
Exception Catch(Action action) {
  try {
    action();
  } catch (const Exception& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was thrown";
  return Exception(L"", L"", 0, L"");
}

std::string DynamicTypeThrownBy(void (*action)()) {
  try {
    action();
  } catch (const InternalErrorException&) {
    return "InternalErrorException";
  } catch (const UserAbortException&) {
    return "UserAbortException";
  } catch (const GPCException&) {
    return "GPCException";
  } catch (const Exception&) {
    return "Exception";
  }
  return "nothing";
}

/// Restores the process-wide settings behind each test.
class InternalErrorHook : public testing::Test {
protected:
  void TearDown() override { CSystemInfo::ResetToDefaults(); }
};

TEST(Exception, carriesWhereItWasRaised) {
  const Exception error(L"Module", L"Unit", -7, L"What \x4E2D happened");
  EXPECT_EQ(error.GetModule(), L"Module");
  EXPECT_EQ(error.GetSrcFile(), L"Unit");
  EXPECT_EQ(error.GetSrcLine(), -7);
  EXPECT_EQ(error.GetDescription(), L"What \x4E2D happened");
  EXPECT_EQ(error.GetThreadId(), platform::CurrentThreadId());
}

TEST(Exception, keepsTheThreadThatConstructedIt) {
  std::vector<Exception> caught;
  std::uint32_t workerId = 0;
  std::thread worker([&] {
    workerId = platform::CurrentThreadId();
    caught.emplace_back(L"M", L"F", 1, L"D");
  });
  worker.join();
  Exception copy(L"", L"", 0, L"");
  copy = caught.front();
  EXPECT_EQ(copy.GetThreadId(), workerId);
  EXPECT_NE(copy.GetThreadId(), platform::CurrentThreadId());
}

TEST(Exception, derivedTypesAddNothing) {
  EXPECT_EQ(sizeof(InternalErrorException), sizeof(Exception));
  EXPECT_EQ(sizeof(UserAbortException), sizeof(Exception));
  EXPECT_EQ(sizeof(GPCException), sizeof(Exception));
  EXPECT_FALSE(std::is_polymorphic_v<Exception>);
}

TEST(Exception, fixedTextsAndModules) {
  const InternalErrorException internal(L"Shared", L"Archive", 138);
  EXPECT_EQ(internal.GetDescription().find(
                L"Internal Error.  An internal inconsistency has been detected.\n"),
            0u);
  const UserAbortException abort(L"App", L"Main", 2);
  EXPECT_EQ(abort.GetDescription(), L"User canceled the operation");
  EXPECT_EQ(abort.GetModule(), L"App");
  const GPCException clipper(L"Gpc", 3);
  EXPECT_EQ(clipper.GetModule(), L"GPC Library");
  EXPECT_EQ(clipper.GetDescription().find(L"Internal Error in General Polygon Clipping library.\n"),
            0u);
}

TEST(ThrowFunctions, formatTheDescription) {
  const Exception error = Catch([] {
    ThrowErrorImpl(L"File", 42, L"Unable to open '%s'.\n%s", L"d\x00E9j\x00E0", L"No such file");
  });
  EXPECT_EQ(error.GetModule(), L"Shared");
  EXPECT_EQ(error.GetSrcFile(), L"File");
  EXPECT_EQ(error.GetSrcLine(), 42);
  EXPECT_EQ(error.GetDescription(), L"Unable to open 'd\x00E9j\x00E0'.\nNo such file");
}

TEST(ThrowFunctions, aFormatWithoutConversionsIsTheDescription) {
  EXPECT_EQ(Catch([] { ThrowErrorImpl(L"Unit", 1, INVALID_PARAMETER_TEXT); }).GetDescription(),
            L"Invalid parameter passed to subroutine or function");
}

TEST(ThrowFunctions, aDescriptionThatDoesNotFitFallsBackToTheFormat) {
  const std::wstring path(9000, L'x');
  const Exception error =
      Catch([&] { ThrowErrorImpl(L"File", 1, L"Unable to open '%s'", path.c_str()); });
  EXPECT_EQ(error.GetDescription(), L"Unable to open '%s'");
}

TEST(ThrowFunctions, carryAModuleOfTheCaller) {
  const Exception error = Catch([] { ThrowSharedError(L"Plug-in", L"Unit", 5, L"%d", 17); });
  EXPECT_EQ(error.GetModule(), L"Plug-in");
  EXPECT_EQ(error.GetDescription(), L"17");
}

TEST(ThrowFunctions, throwExactlyTheTypesToldAcrossTheLibraryBorder) {
  EXPECT_EQ(DynamicTypeThrownBy([] { ThrowErrorImpl(L"U", 1, L"text"); }), "Exception");
  EXPECT_EQ(DynamicTypeThrownBy([] { ThrowSharedError(L"M", L"U", 1, L"text"); }), "Exception");
  EXPECT_EQ(DynamicTypeThrownBy([] { ThrowInternalError(SHARED_MODULE, L"U", 1); }),
            "InternalErrorException");
  EXPECT_EQ(DynamicTypeThrownBy([] { throw UserAbortException(L"M", L"U", 1); }),
            "UserAbortException");
  EXPECT_EQ(DynamicTypeThrownBy([] { throw GPCException(L"U", 1); }), "GPCException");
}

TEST_F(InternalErrorHook, defaultThrowsWithTheArguments) {
  const Exception error = Catch([] { ThrowInternalError(L"Shared", L"Archive", 138); });
  EXPECT_EQ(error.GetModule(), L"Shared");
  EXPECT_EQ(error.GetSrcFile(), L"Archive");
  EXPECT_EQ(error.GetSrcLine(), 138);
}

TEST_F(InternalErrorHook, aHandlerThatReturnsDoesNotSuppressTheThrow) {
  std::vector<int> lines;
  CSystemInfo::InternalErrorHandler(
      [&](const InternalErrorException& error) { lines.push_back(error.GetSrcLine()); });
  EXPECT_THROW(ThrowInternalError(L"Shared", L"U", 11), InternalErrorException);
  EXPECT_EQ(lines, std::vector<int>{11});
}

TEST_F(InternalErrorHook, aHandlerMayThrowATypeOfItsOwn) {
  CSystemInfo::InternalErrorHandler([](const InternalErrorException&) { throw 5; });
  EXPECT_THROW(ThrowInternalError(L"Shared", L"U", 1), int);
}

TEST_F(InternalErrorHook, anEmptyHandlerRestoresTheDefault) {
  CSystemInfo::InternalErrorHandler([](const InternalErrorException&) { throw 5; });
  CSystemInfo::InternalErrorHandler(nullptr);
  EXPECT_TRUE(CSystemInfo::InternalErrorHandler());
  EXPECT_THROW(ThrowInternalError(L"Shared", L"U", 1), InternalErrorException);
}

TEST_F(InternalErrorHook, aHandlerMayReplaceItselfWhileItRuns) {
  std::vector<std::string> calls;
  CSystemInfo::InternalErrorHandler([&](const InternalErrorException&) {
    CSystemInfo::InternalErrorHandler(
        [&](const InternalErrorException&) { calls.emplace_back("second"); });
    calls.emplace_back("first");
  });
  EXPECT_THROW(ThrowInternalError(L"Shared", L"U", 1), InternalErrorException);
  EXPECT_THROW(ThrowInternalError(L"Shared", L"U", 2), InternalErrorException);
  EXPECT_EQ(calls, (std::vector<std::string>{"first", "second"}));
}

TEST_F(InternalErrorHook, resetRestoresHandlerAndFolders) {
  CSystemInfo::InternalErrorHandler([](const InternalErrorException&) { throw 5; });
  CSystemInfo::SetSearchFolders({L"a", L"", L"b"});
  ASSERT_EQ(CSystemInfo::GetSearchFolders().size(), 2u);
  CSystemInfo::ResetToDefaults();
  EXPECT_TRUE(CSystemInfo::GetSearchFolders().empty());
  EXPECT_THROW(ThrowInternalError(L"Shared", L"U", 1), InternalErrorException);
}

/// A presenter that records what it is asked to show.
class RecordingPresenter : public IError {
public:
  using IError::ErrorMsg;
  void BeginOperation() override {}
  void ErrorMsg(const GString& title, const GString& text) const override {
    shown_.push_back({title, text});
  }
  const std::vector<std::pair<GString, GString>>& Shown() const { return shown_; }

private:
  mutable std::vector<std::pair<GString, GString>> shown_;
};

TEST(ErrorPresenter, laysOutMessageAndOrigin) {
  const RecordingPresenter presenter;
  const IError& error = presenter;
  error.ErrorMsg(L"Title", L"X", L"Shared", L"Archive", 138);
  ASSERT_EQ(presenter.Shown().size(), 1u);
  EXPECT_EQ(presenter.Shown()[0].first, L"Title");
  EXPECT_EQ(presenter.Shown()[0].second, L"X [Module Shared, File Archive, Line 138]");
}

TEST(ErrorPresenter, showsAnOverlongMessageWithoutItsOrigin) {
  const RecordingPresenter presenter;
  const IError& error = presenter;
  const GString message(9000, L'm');
  error.ErrorMsg(L"Title", message, L"Shared", L"Archive", 1);
  ASSERT_EQ(presenter.Shown().size(), 1u);
  EXPECT_EQ(presenter.Shown()[0].second, message);
}

}  // namespace
}  // namespace shr
