// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/datareport/Application.h"

#include <memory>

#include "examples/common/OutputFiles.h"
#include "examples/common/Progress.h"
#include "examples/datareport/DataTable.h"
#include "examples/datareport/ReportPage.h"
#include "shared/files/Path.h"

namespace datareport {

using namespace shr;
using namespace examples;

namespace {

constexpr const wchar_t* PROGRAM = L"datareport";

ExitStatus RunArguments(const std::vector<GString>& arguments) {
  const CommandLine commandLine = ParseCommandLine(arguments);
  return RunParsed(PROGRAM, commandLine, [&commandLine] {
    const GString page = Run(commandLine.options);
    return commandLine.options.quiet ? ExitStatus::Success : Show(PROGRAM, page + L"\n");
  });
}

}  // namespace

GString Run(const Options& options) {
  const std::unique_ptr<IProgress> progress = MakeProgress(options.quiet);
  DataTable table = ReadTable(options, *progress);
  for (const ColumnLabel& label : options.labels) {
    table.columns[table.Find(options.input, label.column)].SetLabel(label.text);
  }
  const ReportFiles report = MakeReport(table, options, *progress);
  OutputFiles files(options.outFolder);
  const CPath folder(options.outFolder);
  for (const auto& [name, content] : report) files.Add(folder.Join(name), content);
  files.Commit();
  return folder.Join(PAGE_NAME);
}

ExitStatus RunProgram(const std::vector<GString>& arguments) {
  return examples::RunProgram(PROGRAM, [&] { return RunArguments(arguments); });
}

}  // namespace datareport
