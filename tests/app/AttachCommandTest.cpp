#include "app/Books.h"

using testing::AllOf;
using testing::HasSubstr;

namespace {

// A bill (1), a check (2) and an entry of a partner's request (3), as of March 2024.
class BooksWithPapers : public Books {
 public:
  BooksWithPapers() {
    RelateBirch();
    ImportMarch();
  }
};

}  // namespace

TEST_F(BooksWithPapers, GetOneLaterWhichIsShown) {
  const Outcome outcome = Run({"attach", kFile, "1", "scans/np 7.pdf", "https://papers/7"});

  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "Attached 2 papers to bill 1.\nattached: scans/np 7.pdf\nattached: https://papers/7\n");
  EXPECT_THAT(Run({"show", kFile, "1"}).out, HasSubstr("attached: scans/np 7.pdf\nattached: https://papers/7\n"));
}

TEST_F(BooksWithPapers, SayThatAPaperIsThereAlready) {
  Done({"attach", kFile, "1", "a.pdf"});

  EXPECT_EQ(Run({"attach", kFile, "1", "a.pdf"}).out,
            "Nothing has changed: bill 1 has that already.\nattached: a.pdf\n");
}

TEST_F(BooksWithPapers, LoseOneThatWasAttachedByMistake) {
  Done({"attach", kFile, "3", "a.pdf", "b.pdf"});

  EXPECT_EQ(Run({"detach", kFile, "3", "a.pdf"}).out, "Detached 1 paper from journal entry 3.\nattached: b.pdf\n");
  EXPECT_EQ(Answer({"show", kFile, "3"}).at("attachments"), Json({"b.pdf"}));
}

TEST_F(BooksWithPapers, GetAPaperAsItIsTyped) {
  const std::string listed = "[page 1.pdf,page 2.pdf]";

  const Json attached = Answer({"attach", kFile, "1", listed, "[]", "[x.pdf]", "--user", "Admin"});

  EXPECT_EQ(attached.at("attached"), Json({listed, "[]", "[x.pdf]"}));
  EXPECT_EQ(Answer({"detach", kFile, "1", listed, "[x.pdf]"}).at("attachments"), Json({"[]"}));
  EXPECT_THAT(Run({"detach", kFile, "1", "page 1.pdf"}).err, HasSubstr("has no attachment \"page 1.pdf\""));
}

TEST_F(BooksWithPapers, TellProgramsWhatHasChangedAndWhatThereIs) {
  const Json attached = Answer({"attach", kFile, "2", "a.pdf", "b.pdf"});
  const Json detached = Answer({"detach", kFile, "2", "a.pdf"});

  EXPECT_EQ(attached.dump(), R"({"attached":["a.pdf","b.pdf"],"attachments":["a.pdf","b.pdf"],"transaction":2,)"
                             R"("type":"check","typeNumber":3})");
  EXPECT_EQ(detached.dump(), R"({"attachments":["b.pdf"],"detached":["a.pdf"],"transaction":2,"type":"check",)"
                             R"("typeNumber":3})");
}

TEST_F(BooksWithPapers, TellInSentencesWhoAttachedAndDetachedWhat) {
  Done({"attach", kFile, "1", "a.pdf"});
  Done({"detach", kFile, "1", "a.pdf"});

  EXPECT_THAT(Run({"audit", "show", kFile, "--what", "transaction"}).out,
              AllOf(HasSubstr(" attached papers to bill 1: attachment a.pdf"),
                    HasSubstr(" detached papers from bill 1: attachment was a.pdf")));
}

TEST_F(BooksWithPapers, SayWhatIsWrongWithAPaperOrATransaction) {
  const Json none = ErrorOf({"detach", kFile, "1", "a.pdf"});
  const Outcome empty = Run({"attach", kFile, "1", ""});
  const Outcome nothing = Run({"attach", kFile, "1"});
  const Outcome unknown = Run({"attach", kFile, "77", "a.pdf"});
  const Outcome noNumber = Run({"attach", kFile, "a.pdf", "b.pdf"});

  EXPECT_EQ(none.at("exit"), 2);
  EXPECT_EQ(none.at("what"), "detach");
  EXPECT_EQ(none.at("remedy"), "see-the-attachments");
  EXPECT_EQ(empty.exitCode, 2);
  EXPECT_THAT(empty.err, HasSubstr("The attachment"));
  EXPECT_EQ(nothing.exitCode, 2);
  EXPECT_THAT(nothing.err, HasSubstr("PAPER is required"));
  EXPECT_EQ(unknown.exitCode, 2);
  EXPECT_THAT(unknown.err, HasSubstr("there is no transaction 77\n"));
  EXPECT_EQ(noNumber.exitCode, 2);
  EXPECT_THAT(noNumber.err, HasSubstr("\"a.pdf\""));
}
