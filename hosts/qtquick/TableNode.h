#pragma once

#include "hosts/qtquick/TitleSearch.h"
#include "hosts/qtquick/ViewNode.h"
#include "platform/host/MediaLibrary.h"
#include "platform/uikit/UITableView.h"

#include <QUrl>

namespace qtquick {

/// What one row of a table shows.
struct RowContent {
  Q_GADGET
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString detail MEMBER detail)
  Q_PROPERTY(QUrl picture MEMBER picture)
  Q_PROPERTY(QColor color MEMBER color)
  Q_PROPERTY(QColor titleColor MEMBER titleColor)
  Q_PROPERTY(QColor detailColor MEMBER detailColor)

 public:
  QString title;
  QString detail;
  QUrl picture;
  QColor color = Qt::transparent;
  QColor titleColor = Qt::white;
  QColor detailColor = Qt::white;
  bool operator==(const RowContent&) const = default;
};

/// A table. The list in QML knows only how many rows there are, and asks for the contents of those in sight.
class TableNode final : public ViewNode {
  Q_OBJECT
  Q_PROPERTY(int rows READ rows NOTIFY changed)
  Q_PROPERTY(double rowHeight READ rowHeight NOTIFY changed)
  Q_PROPERTY(QColor tint READ tint NOTIFY changed)
  Q_PROPERTY(QString countText READ countText NOTIFY changed)
  Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed)
  Q_PROPERTY(double offset READ offset NOTIFY changed)

 public:
  TableNode(Mirror& mirror, const Strong<UITableView>& table);

  bool takesTouches() const override { return true; }
  int rows() const;
  double rowHeight() const;
  QColor tint() const;
  /// How many rows there are, in words.
  QString countText() const;
  /// What to show in the place of rows; empty where there are any, or where it is not known yet.
  QString emptyText() const;
  /// Points from the top of the content.
  double offset() const;

  /// Empty for a row that has no cell: it is not in sight, or not yet.
  Q_INVOKABLE qtquick::RowContent content(int row) const;
  Q_INVOKABLE void select(int row) const;
  Q_INVOKABLE void scrollTo(double offset) const;
  /// Looks for the first row from `first` on, and around the end, whose title begins like that. `searched` tells
  /// which one it is. False where the titles of rows out of sight are not known, and nothing is looked for.
  Q_INVOKABLE bool search(const QString& beginning, int first);
  /// The first letter of the title of a row in sight, for an alphabet; empty for other rows.
  Q_INVOKABLE QString letter(int row) const;

 signals:
  /// With the row that was found, or -1 where there is none.
  void searched(int row);

 private:
  Strong<UITableView> table() const { return viewAs<UITableView>(); }
  /// The items that the rows stand for; none where that is not certain.
  std::shared_ptr<const host::LibraryItems> items() const;

  TitleSearch search_;
};

}  // namespace qtquick
