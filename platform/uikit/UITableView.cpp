#include "platform/uikit/UITableView.h"

#include "platform/foundation/Console.h"
#include "platform/uikit/UIControl.h"

#include <algorithm>
#include <cmath>

void UITableView::setRowHeight(double height) {
  if (!std::isfinite(height) || height <= 0) return;
  rowHeight_ = height;
  setNeedsLayout();
}

void UITableView::setTintColor(UIColor color) {
  tintColor_ = color;
  changed();
}

void UITableView::setEmptyText(std::string text) {
  emptyText_ = std::move(text);
  changed();
}

void UITableView::reloadData() {
  isReloaded_ = true;
  needsReload_ = true;
  setNeedsLayout();
}

Strong<UITableViewCell> UITableView::dequeueReusableCellWithIdentifier(const std::string& identifier) {
  const auto found = std::find_if(reusable_.begin(), reusable_.end(),
                                  [&](const auto& cell) { return cell->reuseIdentifier() == identifier; });
  if (found == reusable_.end()) return nullptr;
  auto cell = *found;
  reusable_.erase(found);
  return cell;
}

Strong<UITableViewCell> UITableView::cellForRow(long row) const {
  const auto found = cells_.find(row);
  return found == cells_.end() ? nullptr : found->second;
}

void UITableView::selectRow(long row) {
  if (row < 0 || row >= numberOfRows_ || !acceptsInput(*this)) return;
  if (const auto delegate = delegate_.lock()) {
    delegate->tableView_didSelectRowAtIndexPath(strongReference(this), {0, row});
  }
}

void UITableView::dropCellsOutside(long first, long last) {
  std::erase_if(cells_, [&](const auto& entry) {
    if (entry.first >= first && entry.first <= last) return false;
    reusable_.push_back(entry.second);
    return true;
  });
}

void UITableView::layoutSubviews() {
  UIScrollView::layoutSubviews();
  if (!window()) {
    setNeedsLayout();  // its screen is still loading: the data source is not ready to be asked
    return;
  }
  const auto dataSource = dataSource_.lock();
  if (!dataSource) return;
  const auto self = strongReference(this);
  if (needsReload_) {
    needsReload_ = false;
    dropCellsOutside(0, -1);
    numberOfRows_ = std::max(0L, dataSource->tableView_numberOfRowsInSection(self, 0));
    ++generation_;
  }
  setContentSize({bounds().size.width, static_cast<double>(numberOfRows_) * rowHeight_});
  moveTo(contentOffset());  // a table that grew may stand beyond its end
  const double top = contentOffset().y;
  const double height = bounds().size.height;
  const auto rows = static_cast<double>(numberOfRows_);  // of a hair's height there may be more than a long can count
  const auto first = static_cast<long>(std::min(rows, std::floor(top / rowHeight_)));
  const long last = static_cast<long>(std::min(rows, std::ceil((top + height) / rowHeight_))) - 1;
  dropCellsOutside(first, height > 0 ? last : first - 1);
  for (long row = first; height > 0 && row <= last; ++row) {
    if (cells_.contains(row)) continue;
    const auto cell = dataSource->tableView_cellForRowAtIndexPath(self, {0, row});
    if (!cell) fatalError("a table's data source gave no cell");
    cells_.emplace(row, cell);
  }
  changed();
}
