#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

namespace qtquick {

/// Finds a row by the beginning of its title, in lists of any length: looks at rows for a moment at a time and lets
/// other events through in between. Upper and lower case count the same, and so do letters with and without accents.
/// Main thread.
class TitleSearch final : public QObject {
  Q_OBJECT

 public:
  using Titles = std::function<QString(int row)>;

  TitleSearch();

  /// Looks from the row `first` on to the last one of `rows`, then from the beginning to `first`, and emits
  /// `searched` once: from within this call, or later. A search that is under way is given up.
  void begin(const QString& beginning, int first, int rows, Titles titles);

 signals:
  /// With the first row that was found, or -1 where there is none.
  void searched(int row);

 private:
  void look();
  void end(int row);

  QString beginning_;
  Titles titles_;
  int first_ = 0;
  int rows_ = 0;
  int seen_ = 0;
  QTimer next_;
};

/// `text` as it counts for the search.
QString folded(const QString& text);
/// What stands for `title` in an alphabet: its first letter, as a capital one without accents.
QString firstLetter(const QString& title);

}  // namespace qtquick
