#pragma once

#include "platform/foundation/Values.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UITableViewCell.h"

#include <map>
#include <string>
#include <vector>

class UITableView;

class UITableViewDataSource {
 public:
  virtual ~UITableViewDataSource() = default;
  virtual long tableView_numberOfRowsInSection(const Strong<UITableView>& tableView, long section) = 0;
  virtual Strong<UITableViewCell> tableView_cellForRowAtIndexPath(const Strong<UITableView>& tableView,
                                                                  NSIndexPath indexPath) = 0;
};

class UITableViewDelegate {
 public:
  virtual ~UITableViewDelegate() = default;
  virtual void tableView_didSelectRowAtIndexPath(const Strong<UITableView>& tableView, NSIndexPath indexPath) = 0;
};

/// A list of rows, of which only those in sight exist as cells. One section. Data source and delegate are not kept
/// alive. Main thread only.
///
/// The data source is asked when the table is laid out in its window, at the end of the turn in which it was
/// reloaded, scrolled or resized, and only for rows in sight, from the top down.
class UITableView final : public UIScrollView {
 public:
  using UIScrollView::UIScrollView;

  void setDataSource(const Strong<UITableViewDataSource>& dataSource) { dataSource_ = dataSource; }
  void setDelegate(const Strong<UITableViewDelegate>& delegate) { delegate_ = delegate; }

  /// Points; the same for every row. Setting does nothing for what no row can be high: nothing, less than nothing, an
  /// infinite number of points, or what is no number.
  double rowHeight() const { return rowHeight_; }
  void setRowHeight(double height);
  UIColor tintColor() const { return tintColor_; }
  void setTintColor(UIColor color);
  /// What is shown in the place of rows while `isKnownToBeEmpty`; nothing where it is empty itself.
  const std::string& emptyText() const { return emptyText_; }
  void setEmptyText(std::string text);

  /// Forgets the number of rows and every cell; they are asked for again at the next layout.
  void reloadData();
  /// As of the last layout.
  long numberOfRows() const { return numberOfRows_; }
  /// Whether the data source, asked for its rows since it called for that with `reloadData`, has none. Before, a
  /// table is merely one that nobody has filled yet.
  bool isKnownToBeEmpty() const { return isReloaded_ && !needsReload_ && numberOfRows_ == 0; }
  /// A cell that went out of sight, made with that identifier; none when there is none. No cell class is ever
  /// registered here, so a table begins with none.
  Strong<UITableViewCell> dequeueReusableCellWithIdentifier(const std::string& identifier);
  /// The cell of a row in sight; none for other rows.
  Strong<UITableViewCell> cellForRow(long row) const;
  /// The cells in sight, by row.
  const std::map<long, Strong<UITableViewCell>>& visibleCells() const { return cells_; }
  /// Counts the reloads that were laid out, so that whoever draws the table knows a new list from a longer one.
  std::uint64_t generation() const { return generation_; }

  /// The user chose a row: by touch, pointer, key or the accessibility interface. Nothing happens for a row that does
  /// not exist or while the table's screen is not the topmost one at rest.
  void selectRow(long row);

 protected:
  void layoutSubviews() override;

 private:
  void dropCellsOutside(long first, long last);

  Weak<UITableViewDataSource> dataSource_;
  Weak<UITableViewDelegate> delegate_;
  std::map<long, Strong<UITableViewCell>> cells_;
  std::vector<Strong<UITableViewCell>> reusable_;
  double rowHeight_ = 72;
  UIColor tintColor_ = UIColor::whiteColor();
  std::string emptyText_;
  long numberOfRows_ = 0;
  std::uint64_t generation_ = 0;
  bool needsReload_ = true;
  bool isReloaded_ = false;
};
