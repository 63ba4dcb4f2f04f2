#include "fuzz/ExchangeFuzzing.h"
#include "standalone/exchange/TextBlock.h"

// Mails that a block is looked for in, and bytes that are made into one.

namespace {

using exchange::BytesOfTextBlock;
using exchange::TextBlockOf;
using fuzzing::Require;

constexpr std::string_view kLabel = "MULTIENTITY INVITATION";

void CheckText(std::string_view text) {
  const std::optional<std::string> bytes = fuzzing::Tried([&] { return BytesOfTextBlock(kLabel, text); });
  if (!bytes) return;
  Require(BytesOfTextBlock(kLabel, TextBlockOf(kLabel, *bytes)) == *bytes, "what was read is written for reading");
  Require(bytes->size() < text.size(), "a block has no more bytes than the text that it stands in");
}

void CheckBytes(std::string_view bytes) {
  const std::string block = TextBlockOf(kLabel, bytes);
  Require(BytesOfTextBlock(kLabel, block) == bytes, "any bytes are read back");
  std::string mail = "Hello,\n";
  for (std::string_view rest = block; !rest.empty();) mail.append(fuzzing::TakeLine(rest)).append(" \r\n\r\n");
  Require(BytesOfTextBlock(kLabel, mail + "-- \nAlder") == bytes, "a mail changes nothing");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text = fuzzing::Text(bytes, size);
  CheckText(text);
  CheckText("-----BEGIN MULTIENTITY INVITATION-----\n" + std::string(text) +
            "\n-----END MULTIENTITY INVITATION-----\n");
  CheckBytes(text);
  return 0;
}
