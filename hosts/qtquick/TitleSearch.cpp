#include "hosts/qtquick/TitleSearch.h"

#include <QElapsedTimer>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <utility>

namespace qtquick {

namespace {

constexpr int longestLook = 2;         // milliseconds
constexpr int rowsBetweenGlances = 8;  // at the clock

}  // namespace

QString folded(const QString& text) {
  QString letters;
  for (const QChar letter : text.normalized(QString::NormalizationForm_KD)) {
    if (letter.category() != QChar::Mark_NonSpacing) letters += letter;
  }
  return letters.toUpper().toCaseFolded();  // upper case first, which takes a sharp s for two letters
}

QString firstLetter(const QString& title) {
  const QString words = title.trimmed();
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, words);
  const auto length = std::max<qsizetype>(0, finder.toNextBoundary());
  const QString letter = words.left(length);
  return !letter.isEmpty() && letter.at(0).isLetter() ? folded(letter).toUpper() : letter;
}

TitleSearch::TitleSearch() {
  next_.setSingleShot(true);
  connect(&next_, &QTimer::timeout, this, &TitleSearch::look);
}

void TitleSearch::begin(const QString& beginning, int first, int rows, Titles titles) {
  beginning_ = folded(beginning);
  titles_ = std::move(titles);
  first_ = first;
  rows_ = rows;
  seen_ = 0;
  look();
}

void TitleSearch::look() {
  next_.stop();
  // Where a letter takes more than one character, its accents do.
  const auto enough = 3 * beginning_.size() + 8;
  QElapsedTimer clock;
  clock.start();
  for (; seen_ < rows_; ++seen_) {
    if (seen_ % rowsBetweenGlances == 0 && clock.elapsed() >= longestLook) {
      next_.start();
      return;
    }
    const int row = (first_ + seen_) % rows_;
    if (folded(titles_(row).trimmed().left(enough)).startsWith(beginning_)) return end(row);
  }
  end(-1);
}

void TitleSearch::end(int row) {
  titles_ = nullptr;
  emit searched(row);
}

}  // namespace qtquick
