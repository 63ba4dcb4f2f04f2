#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

// As the module hands it over: title, two buttons, which of them goes on and which does not, their words, text.
constexpr auto NoRelations() {
  return std::array<MessageArgument, 8>{1, 2, 0, 1, 4, 5, 3, -1};
}

class MessageBoxes : public CompanyFixture {
 protected:
  Messages& Boxes() { return host_.Services().messages; }

  void Answer(bool answer) {
    host_.MessageBoxes().SetAnswerer([this, answer](const Question& question) {
      asked_.push_back(question);
      return answer;
    });
  }

  YNC_Tag AskOf(std::int32_t list, std::int32_t text) {
    return Boxes().YesNoInfoMsgO(here_, Boxes().GetKRWinInstance(), list, 1, text, true, true);
  }

  const Util::SourceContext here_{"file", "operation"};
  std::vector<Question> asked_;
  StandaloneHost host_{path_};
};

TEST_F(MessageBoxes, WithoutAnybodyToAskAnswerByWhatDoesNothingFurther) {
  EXPECT_NE(AskOf(14715, 2), kAnswerYes);
  EXPECT_EQ(Boxes().KRMSG_MessageO(0, 4, 0, 14717, NoRelations()), 1);
}

TEST_F(MessageBoxes, AskAboutTransactionsAndRelationsThatWait) {
  Answer(true);

  EXPECT_EQ(AskOf(14715, 2), kAnswerYes);

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].kind, QuestionKind::kYesNo);
  EXPECT_EQ(asked_[0].title, "Intercompany transactions");
  EXPECT_THAT(asked_[0].text, HasSubstr("waiting for your answer, and a relation"));
  EXPECT_EQ(asked_[0].accept, "Yes");
  EXPECT_EQ(asked_[0].decline, "No");
}

TEST_F(MessageBoxes, AskAboutTransactionsThatWait) {
  Answer(false);

  EXPECT_NE(AskOf(14715, 3), kAnswerYes);

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_THAT(asked_[0].text, HasSubstr("Intercompany transactions are waiting for your answer."));
}

TEST_F(MessageBoxes, AskAboutTheRelationsOfARealmThatWasReset) {
  Answer(true);

  EXPECT_EQ(AskOf(14717, 2), kAnswerYes);

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].title, "Intercompany relations");
  EXPECT_THAT(asked_[0].text, HasSubstr("another online company"));
}

TEST_F(MessageBoxes, OfferToSetUpTheFirstRelation) {
  Answer(true);

  EXPECT_EQ(Boxes().KRMSG_MessageO(0, 4, 0, 14717, NoRelations()), 0);

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].kind, QuestionKind::kYesNo);
  EXPECT_EQ(asked_[0].title, "Intercompany relations");
  EXPECT_THAT(asked_[0].text, HasSubstr("No relation with a partner company is established yet"));
  EXPECT_EQ(asked_[0].accept, "Set up now");
  EXPECT_EQ(asked_[0].decline, "Not now");
}

TEST_F(MessageBoxes, AnswerAnOfferThatIsDeclinedByItsOtherButton) {
  Answer(false);

  EXPECT_EQ(Boxes().KRMSG_MessageO(0, 4, 0, 14717, NoRelations()), 1);
}

TEST_F(MessageBoxes, ShowTextsOfTheCallersOwn) {
  Answer(true);
  const std::array<MessageArgument, 4> arguments{-7, Util::TString("A title"), Util::TString("A text"), -1};

  Boxes().KRMSG_MessageO(0, 3, 3, 2003, arguments);

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].kind, QuestionKind::kNotice);
  EXPECT_EQ(asked_[0].title, "A title");
  EXPECT_EQ(asked_[0].text, "A text");
  EXPECT_EQ(asked_[0].accept, "OK");
  EXPECT_EQ(asked_[0].decline, "");
}

TEST_F(MessageBoxes, RefuseArgumentsThatMakeNoBox) {
  const std::array<MessageArgument, 3> tooFew{1, 2, 0};
  const std::array<MessageArgument, 7> threeButtons{1, 3, 0, 1, 4, 5, 3};
  const std::array<MessageArgument, 2> noTitle{-7, 5};

  EXPECT_THAT(MessageOf<std::invalid_argument>([&] { Boxes().KRMSG_MessageO(0, 4, 0, 14717, tooFew); }),
              HasSubstr("Argument 4 of a message box of list 14717 is not a number"));
  EXPECT_THROW(Boxes().KRMSG_MessageO(0, 4, 0, 14717, threeButtons), std::invalid_argument);
  EXPECT_THROW(Boxes().KRMSG_MessageO(0, 3, 3, 2003, noTitle), std::invalid_argument);
  EXPECT_THROW(Boxes().KRMSG_MessageO(0, 9, 9, 2003, noTitle), std::invalid_argument);
}

TEST_F(MessageBoxes, WarnWithTwoTexts) {
  Answer(true);

  Boxes().KRWarnMsgWithTitle02(0, here_, "first", "second", true);

  ASSERT_THAT(asked_, SizeIs(1));
  EXPECT_EQ(asked_[0].kind, QuestionKind::kWarning);
  EXPECT_EQ(asked_[0].title, "first");
  EXPECT_EQ(asked_[0].text, "second");
  EXPECT_EQ(asked_[0].decline, "");
}

TEST_F(MessageBoxes, HaveTheTextsThatAreShownOnTheirOwn) {
  EXPECT_THAT(std::string(StringResource(2003, 3023)), HasSubstr("no online company id"));
  EXPECT_THAT(std::string(StringResource(14715, 4)), HasSubstr("still pending"));
  EXPECT_EQ(StringResource(14715, 99), "");
}

TEST_F(MessageBoxes, FillABufferNoFurtherThanItGoes) {
  std::array<char, 6> buffer{};
  buffer.fill('#');

  Boxes().GetIndStringC(buffer.data(), 5, Boxes().GetKRWinInstance(), 14715, 1);

  EXPECT_STREQ(buffer.data(), "Inte");
  EXPECT_EQ(buffer[5], '#');
}

}  // namespace
}  // namespace standalone
