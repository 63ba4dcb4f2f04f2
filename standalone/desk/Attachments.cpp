#include "standalone/desk/Attachments.h"

#include <algorithm>
#include <utility>

#include "standalone/books/AttachmentTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/Reversing.h"
#include "standalone/desk/inside/TypeRights.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

bool Holds(const std::vector<std::string>& texts, const std::string& text) {
  return std::ranges::find(texts, text) != texts.end();
}

standalone::TransactionHeader RequireModifiable(Work& work, std::int32_t txnId) {
  RequireRightsToSomeType(work, {kActionModify});
  standalone::TransactionHeader header = RequirePosted(work, txnId);
  RequireRightsToType(work, header.type, {kActionModify});
  return header;
}

ChangedAttachments ChangedOf(Work& work, const standalone::TransactionHeader& header,
                             std::vector<std::string> changed) {
  return {.type = EnteredType{header.type},
          .txnId = header.id,
          .changed = std::move(changed),
          .attachments = work.Host().Attachments().Of(header.id)};
}

}  // namespace

ChangedAttachments AttachTo(Company& company, std::int32_t txnId,
                            const std::vector<standalone::Attachment>& attachments) {
  Work work(company.Opened(), UseCase::kAttach);
  return work.Write([&] {
    const standalone::TransactionHeader header = RequireModifiable(work, txnId);
    const std::vector<std::string> before = work.Host().Attachments().Of(txnId);
    std::vector<std::string> added;
    for (const standalone::Attachment& attachment : attachments) {
      if (Holds(before, attachment.Text()) || Holds(added, attachment.Text())) continue;
      work.Host().Attachments().Add(txnId, attachment.Text());
      added.push_back(attachment.Text());
    }
    work.RecordChanges(DeedOfAttaching(header, added));
    return ChangedOf(work, header, std::move(added));
  });
}

ChangedAttachments DetachFrom(Company& company, std::int32_t txnId, const std::vector<std::string>& attachments) {
  Work work(company.Opened(), UseCase::kDetach);
  return work.Write([&] {
    const standalone::TransactionHeader header = RequireModifiable(work, txnId);
    const std::vector<std::string> before = work.Host().Attachments().Of(txnId);
    std::vector<std::string> removed;
    for (const std::string& attachment : attachments) {
      if (!Holds(before, attachment)) {
        work.Refuse(TextOf(header) + " has no attachment " + standalone::Quoted(attachment),
                    Remedy::kSeeTheAttachments);
      }
      if (Holds(removed, attachment)) continue;
      work.Host().Attachments().Remove(txnId, attachment);
      removed.push_back(attachment);
    }
    work.RecordChanges(DeedOfDetaching(header, removed));
    return ChangedOf(work, header, std::move(removed));
  });
}

}  // namespace desk
