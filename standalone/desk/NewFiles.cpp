#include "standalone/desk/NewFiles.h"

#include "standalone/company/WholeFile.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/OpenCompany.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

[[noreturn]] void ThrowTaken(const std::filesystem::path& file) {
  throw standalone::InvalidInput("There is a file " + standalone::PathText(file) +
                                 " already, which stays as it is; choose another name.");
}

}  // namespace

void RequireNewFile(Company& company, const std::filesystem::path& file) {
  standalone::WholeFile whole(file, company.Opened().Host().CompanyFilePath());
  if (whole.IsTaken()) ThrowTaken(file);
  // What was begun goes away again.
  whole.Write({});
}

void WriteNewFile(Company& company, const std::filesystem::path& file, std::string_view text) {
  standalone::WholeFile whole(file, company.Opened().Host().CompanyFilePath());
  if (whole.IsTaken()) ThrowTaken(file);
  whole.Write(text);
  if (!whole.Publish(/*replaces=*/false)) ThrowTaken(file);
}

}  // namespace desk
