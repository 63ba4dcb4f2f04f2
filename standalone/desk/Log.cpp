#include "standalone/desk/Log.h"

#include "standalone/company/CompanyFile.h"
#include "standalone/company/LogReader.h"
#include "standalone/desk/Company.h"

namespace desk {

std::vector<LogLine> ListLogLines(Company& company, std::size_t count) {
  const standalone::LogReader log(standalone::CompanyFile::LogPath(company.File()));
  std::vector<LogLine> lines;
  for (const standalone::LogLine& line : log.LastLines(count)) {
    lines.push_back({.time = line.time,
                     .user = line.user,
                     .level = line.level,
                     .eventType = line.eventType,
                     .sourceFile = line.sourceFile,
                     .sourceLine = line.sourceLine,
                     .shortName = line.shortName,
                     .signature = line.signature,
                     .message = line.message});
  }
  return lines;
}

}  // namespace desk
