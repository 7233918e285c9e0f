// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: destinations (memory, new file, appended file, remote, callback) x filtering (mask,
// enabled, direct); bytes of the file; separators; thread ids and interleaving; faults (no folder,
// full disk through a folder in the file's place, re-enabling); static construction and
// destruction; scopes; reports and crash records.

#include "shared/diagnostics/Logger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "shared/diagnostics/Exception.h"
#include "shared/diagnostics/Timer.h"
#include "shared/platform/TextMode.h"
#include "shared/platform/Threads.h"
#include "shared/platform/WindowsTypes.h"
#include "shared/text/Utf.h"
#include "tests/support/DatagramReceiver.h"
#include "tests/support/TemporaryFolder.h"

namespace shr {
namespace {

/// Logs while the program's statics are constructed and destroyed.
struct StaticClient {
  StaticClient() { g_Logger.Send(LogInfo, L"from a static constructor"); }
  ~StaticClient() { g_Logger.Send(LogInfo, L"from a static destructor"); }
};
const StaticClient STATIC_CLIENT;
const GString TEXT_AT_START = g_Logger.GetBuffer();

std::wstring ReadLog(const GString& path) {
  const std::string bytes = test::ReadBytes(path);
  EXPECT_EQ(bytes.substr(0, 2), "\xFF\xFE");
  if (bytes.size() < 2) return {};
  std::wstring text(bytes.size(), L'\0');
  text.resize(Utf16ToWide(std::string_view(bytes).substr(2), ByteOrder::LittleEndian, text.data()));
  return text;
}

std::wstring LineEnd() {
  return platform::TextModeTranslatesLineEnds() ? L"\r\n" : L"\n";
}

/// `lines` with the platform's line end behind each.
std::wstring AsFile(const std::vector<std::wstring>& lines) {
  std::wstring text;
  for (const std::wstring& line : lines) text += line + LineEnd();
  return text;
}

bool HasLine(const GString& buffer, const std::wstring& line) {
  return (L"\n" + buffer.String()).find(L"\n" + line) != std::wstring::npos;
}

TEST(Logger, serveStaticConstructors) {
  EXPECT_NE(TEXT_AT_START.find(L"from a static constructor\n"), GString::npos);
}

TEST(Logger, collectsLinesInMemoryWithoutAFile) {
  CLogger logger;
  logger.Send(LogInfo, L"one");
  logger.SendVA(LogTrace, L"%s %d", L"two", 2);
  EXPECT_EQ(logger.GetBuffer(), L"one\ntwo 2\n");
  logger.EmptyBuffer();
  EXPECT_TRUE(logger.GetBuffer().empty());
}

TEST(Logger, maskFiltersFormattedLinesOnly) {
  CLogger logger(L"", LogError | LogWarning);
  logger.SendVA(LogInfo, L"filtered");
  logger.SendVA(LogInfo | LogRemote, L"filtered too");
  logger.SendVA(LogWarning, L"kept");
  logger.Send(LogInfo, L"direct");
  EXPECT_EQ(logger.GetBuffer(), L"kept\ndirect\n");
  logger.SetType(LogAllKinds);
  EXPECT_EQ(logger.GetType(), LogAllKinds);
  logger.Enable(false);
  logger.SendVA(LogError, L"disabled");
  logger.Send(LogError, L"disabled");
  logger.Enable(true);
  logger.SendVA(LogInfo, L"again");
  EXPECT_EQ(logger.GetBuffer(), L"kept\ndirect\nagain\n");
}

TEST(Logger, aTextThatDoesNotFitTheFormatterIsReplacedByItsFormat) {
  CLogger logger;
  const std::wstring longText(9000, L'x');
  logger.SendVA(LogInfo, L"read '%s'", longText.c_str());
  logger.Send(LogInfo, longText);
  EXPECT_EQ(logger.GetBuffer(), L"read '%s'\n" + longText + L"\n");
}

TEST(Logger, separatorsNeverDoubleAnEmptyLine) {
  CLogger logger(L"", 0);
  logger.Separator(LogInfo, L"First");
  logger.Separator(LogInfo, L"");
  logger.Separator(LogInfo, L"");
  logger.Separator(LogInfo, L"Title");
  EXPECT_EQ(logger.GetBuffer(), L"First\n-----\n\nTitle\n-----\n");
}

TEST(Logger, aNewFileBeginsWithTheMarkAndAnEmptyLine) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"run.log");
  test::WriteBytes(path, "old content");
  CLogger logger(path);
  EXPECT_EQ(test::ReadBytes(path), "old content") << "the file is opened by the first line";
  logger.Send(LogInfo, L"\x0394\x4E2D line");
  logger.Send(LogInfo, L"");
  EXPECT_EQ(ReadLog(path), AsFile({L"", L"\x0394\x4E2D line", L""}));
  EXPECT_TRUE(logger.GetBuffer().empty());
}

TEST(Logger, appendingKeepsTheContent) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"run.log");
  {
    CLogger first(path);
    first.Send(LogInfo, L"one");
  }
  CLogger second;
  second.SetOutputFile(path, true);
  second.Send(LogInfo, L"two");
  EXPECT_EQ(ReadLog(path), AsFile({L"", L"one", L"two"}));
  const GString fresh = folder.Path(L"fresh.log");
  second.SetOutputFile(fresh, true);
  second.Send(LogInfo, L"three");
  EXPECT_EQ(ReadLog(fresh), AsFile({L"three"}));
}

TEST(Logger, emptyPathIsAnInternalError) {
  CLogger logger;
  try {
    logger.SetOutputFile(L"", false);
    FAIL();
  } catch (const InternalErrorException& error) {
    EXPECT_EQ(error.GetSrcFile(), L"Logger");
    EXPECT_EQ(error.GetSrcLine(), 85);
  }
}

struct OpenFault {
  const char* name;
  bool append;
  int line;
};

TEST(Logger, aFileThatCannotBeOpenedDisablesUntilEnabledAgain) {
  for (const OpenFault& fault : {OpenFault{"afresh", false, 216}, OpenFault{"append", true, 234}}) {
    SCOPED_TRACE(fault.name);
    const test::TemporaryFolder folder;
    CLogger logger;
    logger.SetOutputFile(folder.Path(L"missing") + L"/run.log", fault.append);
    try {
      logger.SendVA(LogInfo, L"lost");
      ADD_FAILURE();
    } catch (const Exception& error) {
      EXPECT_EQ(error.GetSrcFile(), L"Logger");
      EXPECT_EQ(error.GetSrcLine(), fault.line);
      EXPECT_EQ(error.GetDescription().find(L"Unable to open '" + folder.Path(L"missing")), 0u);
    }
    EXPECT_FALSE(logger.IsEnabled());
    logger.Send(LogInfo, L"ignored while disabled");
    logger.SetOutputFile(folder.Path(L"run.log"), fault.append);
    logger.Enable(true);
    logger.Send(LogInfo, L"works");
    EXPECT_NE(ReadLog(folder.Path(L"run.log")).find(L"works"), std::wstring::npos);
  }
}

TEST(Logger, threadIdGoesInFrontOfEveryLine) {
  CLogger logger;
  logger.EnableThreadIdPrefix(true);
  logger.Send(LogInfo, L"text");
  logger.Separator(LogInfo, L"");
  logger.Separator(LogInfo, L"");
  GString prefix;
  prefix.FormatString(L"[%x] ", platform::CurrentThreadId());
  EXPECT_EQ(logger.GetBuffer(), prefix + L"text\n" + prefix + L"\n");
}

struct Recorded {
  std::vector<std::pair<int, GString>> lines;
  CLogger* logger = nullptr;
};

TEST(Logger, callbackSeesEveryLineAndMayLog) {
  CLogger logger;
  Recorded recorded;
  recorded.logger = &logger;
  logger.SetOutputCallback(
      [](int kind, const GString& line, void* user) {
        auto& record = *static_cast<Recorded*>(user);
        record.lines.emplace_back(kind, line);
        if (line == L"question") record.logger->Send(LogTrace, L"answer");
      },
      &recorded);
  logger.Send(LogError, L"question");
  ASSERT_EQ(recorded.lines.size(), 2u);
  EXPECT_EQ(recorded.lines[0].first, LogError);
  EXPECT_EQ(recorded.lines[1].second, L"answer");
  EXPECT_EQ(logger.GetBuffer(), L"question\nanswer\n");
}

TEST(Logger, aCallbackThatAlwaysLogsEnds) {
  CLogger logger;
  Recorded recorded;
  recorded.logger = &logger;
  logger.SetOutputCallback(
      [](int, const GString& line, void* user) {
        auto& record = *static_cast<Recorded*>(user);
        record.lines.emplace_back(0, line);
        record.logger->Send(LogTrace, line + L"+");
      },
      &recorded);
  logger.Send(LogInfo, L"a");
  EXPECT_EQ(logger.GetBuffer(), L"a\na+\na++\n");
  EXPECT_EQ(recorded.lines.size(), 2u);
  logger.Send(LogInfo, L"b");
  EXPECT_EQ(recorded.lines.size(), 4u) << "the next line is handed over again";
}

TEST(Logger, aFileThatIsNotUtf16IsContinuedBesideIt) {
  for (const std::string& old : {std::string("narrow text"), std::string("\xFE\xFF\0a", 4),
                                 std::string("\xEF\xBB\xBFx"), std::string("x")}) {
    const test::TemporaryFolder folder;
    const GString path = folder.Path(L"run.log");
    const std::wstring notice = L"'" + path + L"' is not UTF-16; its log goes on here.";
    test::WriteBytes(path, old);
    test::WriteBytes(folder.Path(L"run.utf16.log"), "neither is this");
    for (const wchar_t* const line : {L"one", L"two"}) {
      CLogger logger;
      logger.SetOutputFile(path, true);
      logger.Send(LogInfo, line);
      EXPECT_EQ(logger.GetOutputFile(), folder.Path(L"run.utf16-2.log"));
    }
    EXPECT_EQ(test::ReadBytes(path), old);
    EXPECT_EQ(ReadLog(folder.Path(L"run.utf16-2.log")), AsFile({notice, L"one", notice, L"two"}));
  }
}

TEST(Logger, halfAUnitAtTheEndDoesNotShiftWhatIsAppended) {
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"run.log");
  test::WriteBytes(path, std::string("\xFF\xFE"
                                     "a\0b",
                                     5));
  CLogger logger;
  logger.SetOutputFile(path, true);
  logger.Send(LogInfo, L"c");
  EXPECT_EQ(ReadLog(path), AsFile({L"ac"}));
}

TEST(Logger, linesOfEightThreadsAreWholeAndAllThere) {
  constexpr int THREADS = 8;
  constexpr int LINES = 500;
  const test::TemporaryFolder folder;
  const GString path = folder.Path(L"run.log");
  {
    CLogger logger(path);
    std::vector<std::thread> threads;
    for (int id = 0; id < THREADS; ++id) {
      threads.emplace_back([&logger, id] {
        for (int i = 0; i < LINES; ++i) logger.SendVA(LogInfo, L"thread %d line %03d end", id, i);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  std::vector<std::wstring> expected(1);
  for (int id = 0; id < THREADS; ++id) {
    for (int i = 0; i < LINES; ++i) {
      GString line;
      line.FormatString(L"thread %d line %03d end", id, i);
      expected.push_back(line.String());
    }
  }
  std::vector<std::wstring> found;
  const std::wstring text = ReadLog(path);
  const std::wstring lineEnd = LineEnd();
  for (std::size_t pos = 0; pos < text.size();) {
    const std::size_t end = std::min(text.find(lineEnd, pos), text.size());
    found.push_back(text.substr(pos, end - pos));
    pos = end + lineEnd.size();
  }
  std::sort(found.begin(), found.end());
  EXPECT_EQ(found, expected);
}

TEST(RemoteLogger, sendsTheDatagramOfALine) {
  test::DatagramReceiver collector;
  CRemoteLogger remote(L"127.0.0.1", collector.Port(), 100);
  ASSERT_TRUE(remote.IsEnabled());
  EXPECT_TRUE(remote.Send(L"caf\x00E9"));
  EXPECT_EQ(collector.Receive(), "<6> caf\xE9");
  EXPECT_TRUE(remote.SendVA(L"%d of %d", 1, 2));
  EXPECT_EQ(collector.Receive(), "<6> 1 of 2");
  remote.Enable(false);
  EXPECT_FALSE(remote.Send(L"not sent"));
}

TEST(RemoteLogger, resolvesAName) {
  test::DatagramReceiver collector;
  CRemoteLogger remote(L"", 0, 0);
  EXPECT_FALSE(remote.IsEnabled());
  ASSERT_TRUE(remote.SetHost(L"localhost", collector.Port(), 5000));
  EXPECT_TRUE(remote.Send(L"x"));
  EXPECT_EQ(collector.Receive(), "<6> x");
}

TEST(RemoteLogger, aNameThatCannotBeResolvedCostsNoMoreThanTheTimeOut) {
  CTimer timer;
  timer.Start();
  CRemoteLogger remote(L"no-such-host.invalid", 514, 200);
  EXPECT_FALSE(remote.IsEnabled());
  EXPECT_FALSE(remote.Send(L"x"));
  EXPECT_LT(timer.Elapsed(), 2000.0);
  EXPECT_FALSE(remote.SetHost(L"127.0.0.1", 0, 100));
  EXPECT_FALSE(remote.SetHost(L"127.0.0.1", 65536, 100));
}

TEST(Logger, remoteLinesCarryThePrefix) {
  test::DatagramReceiver collector;
  CLogger logger;
  EXPECT_FALSE(logger.IsRemoteLoggerEnabled());
  ASSERT_TRUE(logger.SetRemoteLogger(L"app: ", L"127.0.0.1", collector.Port(), 100));
  logger.Send(LogInfo, L"local only");
  logger.SendVA(LogInfo | LogRemote, L"both %d", 7);
  EXPECT_EQ(collector.Receive(), "<6> app: both 7");
  logger.EnableRemoteLogger(false);
  logger.Send(LogInfo | LogRemote, L"remote is off");
  EXPECT_EQ(logger.GetBuffer(), L"local only\nboth 7\nremote is off\n");
  EXPECT_FALSE(logger.SetRemoteLogger(L"", L"127.0.0.1", -1, 100));
}

/// Gives `g_Logger` an empty buffer for a test.
class ProcessLogger : public testing::Test {
protected:
  void SetUp() override { g_Logger.EmptyBuffer(); }
};

TEST_F(ProcessLogger, scopesLogEnterAndExit) {
  {
    ScopedLogMessage plain(L"Import");
    ScopedLogMessage renamed(L"Clip");
    renamed.SetExitMessage(L"Clip of 7");
  }
  EXPECT_EQ(g_Logger.GetBuffer(), L"Enter Import\nEnter Clip\nExit Clip of 7\nExit Import\n");
}

TEST_F(ProcessLogger, aScopeLeftByAnExceptionLogsNoExit) {
  try {
    ScopedLogMessage scope(L"Import");
    throw std::runtime_error("stop");
  } catch (const std::runtime_error&) {
    ScopedLogMessage cleanUp(L"Clean up");
  }
  EXPECT_EQ(g_Logger.GetBuffer(), L"Enter Import\nEnter Clean up\nExit Clean up\n");
}

TEST(LoggerReports, everyBlockHasItsTitleAndItsFirstLine) {
  CLogger logger;
  logger.LogAllConfigInfo();
  const GString text = logger.GetBuffer();
  std::size_t last = 0;
  for (const wchar_t* start :
       {L"Current time is ", L"Operating System\n----------------\nOperating system is ",
        L"Video Configuration\n-------------------\n",
        L"Processor Configuration\n-----------------------\nVendor identifier = ",
        L"Coprocessor Configuration\n-------------------------\nFloating point control word = ",
        L"Memory Configuration\n--------------------\nMemory in use = ",
        L"Loaded Modules (path, version, time, size)\n"}) {
    EXPECT_TRUE(HasLine(text, start)) << GString(start);
    const std::size_t where = text.find(start);
    EXPECT_GE(where, last) << "blocks are in order";
    last = where;
  }
  EXPECT_TRUE(HasLine(text, L"Number of processors = "));
  EXPECT_FALSE(HasLine(text, L"Number of processors = 0"));
  EXPECT_FALSE(HasLine(text, L"Physical memory = 0 MB"));
  EXPECT_NE(text.find(L"diagnostics_tests"), GString::npos) << "the program is among the modules";
}

TEST(LoggerReports, nothingIsReportedWhileDisabled) {
  CLogger logger(L"", LogAllKinds, false);
  logger.LogAllConfigInfo();
  EXCEPTION_RECORD record = {};
  EXCEPTION_POINTERS pointers = {&record, nullptr};
  logger.Exception(&pointers);
  EXPECT_TRUE(logger.GetBuffer().empty());
}

struct CrashRow {
  const char* name;
  std::uint32_t code;
  std::uintptr_t access;
  const wchar_t* expected;
};

TEST(LoggerReports, crashRecordsAreSpelledOut) {
  const CrashRow rows[] = {
      {"read", 0xC0000005, 0,
       L"Exception Info\n--------------\nCode = c0000005 (Access Violation)\n"
       L"Attempt to read at address 0000000000001234\nFlags = 00000001\n"
       L"Address = 0000000000ABCDEF\n\n"},
      {"write", 0xC0000005, 1,
       L"Exception Info\n--------------\nCode = c0000005 (Access Violation)\n"
       L"Attempt to write at address 0000000000001234\nFlags = 00000001\n"
       L"Address = 0000000000ABCDEF\n\n"},
      {"underflow", 0xC0000093, 0,
       L"Exception Info\n--------------\nCode = c0000093 (Float: Undeflow)\nFlags = 00000001\n"
       L"Address = 0000000000ABCDEF\n\n"},
      {"unknown", 0xE06D7363, 0,
       L"Exception Info\n--------------\nCode = e06d7363 (Unknown)\nFlags = 00000001\n"
       L"Address = 0000000000ABCDEF\n\n"},
  };
  for (const CrashRow& row : rows) {
    EXCEPTION_RECORD record = {};
    record.ExceptionCode = static_cast<DWORD>(row.code);
    record.ExceptionFlags = 1;
    record.ExceptionAddress = reinterpret_cast<void*>(std::uintptr_t{0xABCDEF});
    record.NumberParameters = 2;
    record.ExceptionInformation[0] = row.access;
    record.ExceptionInformation[1] = 0x1234;
    EXCEPTION_POINTERS pointers = {&record, nullptr};
    CLogger logger;
    logger.Exception(&pointers);
    EXPECT_EQ(logger.GetBuffer(), row.expected) << row.name;
  }
}

TEST(Timer, measuresOnlyAfterItsStart) {
  CTimer timer;
  EXPECT_EQ(timer.Elapsed(), 0.0);
  EXPECT_EQ(timer.Elapsed(0), 0.0);
  EXPECT_GT(timer.GetFrequency(), 0);
  const std::int64_t begin = timer.GetTicks();
  timer.Start();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const double inner = timer.Elapsed();
  const double outer = timer.Elapsed(begin);
  EXPECT_GE(inner, 15.0);
  EXPECT_LT(inner, 5000.0);
  EXPECT_GE(outer, inner);
  timer.Reset();
  EXPECT_EQ(timer.Elapsed(), 0.0);
}

}  // namespace
}  // namespace shr
