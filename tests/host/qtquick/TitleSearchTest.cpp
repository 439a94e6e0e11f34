#include "hosts/qtquick/TitleSearch.h"

#include <gtest/gtest.h>

#include <QTest>

#include <thread>
#include <vector>

namespace {

using qtquick::firstLetter;
using qtquick::TitleSearch;

class TitleSearchTest : public testing::Test {
 protected:
  TitleSearchTest() {
    QObject::connect(&search, &TitleSearch::searched, &search, [this](int row) { answers.push_back(row); });
  }

  std::vector<int> rowOf(const QString& beginning, int first = 0) {
    answers.clear();
    search.begin(beginning, first, static_cast<int>(titles.size()),
                 [this](int row) { return titles[static_cast<std::size_t>(row)]; });
    return answers;
  }

  std::vector<QString> titles{
      "Alba",  "Etna",           QStringLiteral("\u00C9toile"), "estate",
      "Zorro", "  Quarto piano", QStringLiteral("Stra\u00DFe"), QStringLiteral("\u6620\u753B")};
  TitleSearch search;
  std::vector<int> answers;
};

using Rows = std::vector<int>;

}  // namespace

TEST_F(TitleSearchTest, FindsTheFirstTitleFromARowOn) {
  EXPECT_EQ(rowOf("e"), Rows{1});
  EXPECT_EQ(rowOf("e", 2), Rows{2});
}

TEST_F(TitleSearchTest, GoesOnAtTheBeginningAfterTheLastRow) {
  EXPECT_EQ(rowOf("al", 4), Rows{0});
}

TEST_F(TitleSearchTest, CaseAndAccentsDoNotMatter) {
  EXPECT_EQ(rowOf("ETO"), Rows{2});
  EXPECT_EQ(rowOf(QStringLiteral("\u00E9t"), 2), Rows{2});
  EXPECT_EQ(rowOf("EST"), Rows{3});
  EXPECT_EQ(rowOf("strass"), Rows{6});
  EXPECT_EQ(rowOf(QStringLiteral("\u6620")), Rows{7});
}

TEST_F(TitleSearchTest, BlanksBeforeATitleDoNotMatter) {
  EXPECT_EQ(rowOf("quarto p"), Rows{5});
}

TEST_F(TitleSearchTest, TellsThatThereIsNone) {
  EXPECT_EQ(rowOf("x"), Rows{-1});
  titles.clear();
  EXPECT_EQ(rowOf("a"), Rows{-1});
}

TEST_F(TitleSearchTest, OfAnyLengthLetsOtherEventsThroughAndAnswersOnce) {
  int looks = 0;
  const auto slowTitle = [&](int row) {
    ++looks;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return row == 60 ? QStringLiteral("There") : QStringLiteral("Elsewhere");
  };
  int looksBeforeOther = -1;
  QTimer::singleShot(0, &search, [&] { looksBeforeOther = looks; });
  search.begin("the", 0, 100, slowTitle);
  EXPECT_LT(looks, 61);
  EXPECT_TRUE(answers.empty());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !answers.empty(); }));
  EXPECT_EQ(answers, Rows{60});
  EXPECT_GE(looksBeforeOther, 0);
  EXPECT_LT(looksBeforeOther, 61);
}

TEST_F(TitleSearchTest, ANewOneTakesThePlaceOfTheOneUnderWay) {
  const auto slowTitle = [](int) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return QStringLiteral("Elsewhere");
  };
  search.begin("x", 0, 1000, slowTitle);
  EXPECT_EQ(rowOf("z"), Rows{4});
  QTest::qWait(20);
  EXPECT_EQ(answers, Rows{4});
}

TEST(FirstLetter, IsACapitalWithoutAccent) {
  EXPECT_EQ(firstLetter("alba"), "A");
  EXPECT_EQ(firstLetter(QStringLiteral("\u00E9toile")), "E");
  EXPECT_EQ(firstLetter("  zorro"), "Z");
  EXPECT_EQ(firstLetter("2001"), "2");
  EXPECT_EQ(firstLetter(QStringLiteral("\u6620\u753B")), QStringLiteral("\u6620"));
  EXPECT_EQ(firstLetter(QString::fromUcs4(U"\U0001F3AC film")), QString::fromUcs4(U"\U0001F3AC"));
  EXPECT_EQ(firstLetter(""), "");
}
