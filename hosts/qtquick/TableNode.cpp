#include "hosts/qtquick/TableNode.h"

#include "hosts/qtquick/Contrast.h"
#include "hosts/qtquick/Mirror.h"
#include "hosts/qtquick/Pictures.h"
#include "platform/foundation/RunLoop.h"

#include <QLocale>

namespace qtquick {

namespace {

QString textOf(const Strong<UILabel>& label) {
  return label ? QString::fromStdString(label->text().value_or(std::string())) : QString();
}

}  // namespace

TableNode::TableNode(Mirror& mirror, const Strong<UITableView>& table) : ViewNode(mirror, table) {
  connect(&search_, &TitleSearch::searched, this, &TableNode::searched);
}

int TableNode::rows() const {
  const auto table = this->table();
  return table ? static_cast<int>(table->numberOfRows()) : 0;
}

double TableNode::rowHeight() const {
  const auto table = this->table();
  return table ? table->rowHeight() : 1;
}

QColor TableNode::tint() const {
  const auto table = this->table();
  return table ? colour(table->tintColor()) : QColor(Qt::white);
}

QString TableNode::countText() const {
  return rows() == 1 ? QStringLiteral("1 item")
                     : QLocale(QLocale::English).toString(rows()) + QStringLiteral(" items");
}

QString TableNode::emptyText() const {
  const auto table = this->table();
  return table && table->isKnownToBeEmpty() ? QString::fromStdString(table->emptyText()) : QString();
}

double TableNode::offset() const {
  const auto table = this->table();
  return table ? table->contentOffset().y : 0;
}

RowContent TableNode::content(int row) const {
  const auto table = this->table();
  const auto cell = table ? table->cellForRow(row) : nullptr;
  if (!cell) return {};
  RowContent content;
  content.title = textOf(cell->textLabel());
  content.detail = textOf(cell->detailTextLabel());
  content.picture = pictureUrl(cell->imageView()->image());
  const auto& contrast = mirror().contrast();
  content.color = contrast.ground(colour(cell->contentView()->backgroundColor()));
  content.titleColor = contrast.ink(colour(cell->textLabel()->textColor()));
  if (cell->detailTextLabel()) content.detailColor = contrast.ink(colour(cell->detailTextLabel()->textColor()));
  return content;
}

void TableNode::select(int row) const {
  const auto table = this->table();
  if (!table) return;
  const RunLoop::Turn turn(RunLoop::main());
  table->selectRow(row);
}

void TableNode::scrollTo(double offset) const {
  const auto table = this->table();
  if (!table) return;
  const RunLoop::Turn turn(RunLoop::main());
  table->setContentOffset({table->contentOffset().x, offset});
}

std::shared_ptr<const host::LibraryItems> TableNode::items() const {
  const auto table = this->table();
  auto items = mirror().listedItems();
  if (!table || !items || table->visibleCells().empty()) return nullptr;
  const auto& [row, cell] = *table->visibleCells().begin();
  const bool isSame = items->count() == static_cast<std::size_t>(table->numberOfRows()) &&
                      items->item(static_cast<std::size_t>(row)).title == cell->textLabel()->text();
  return isSame ? items : nullptr;
}

bool TableNode::search(const QString& beginning, int first) {
  const auto items = this->items();
  if (!items) return false;
  search_.begin(beginning, first, rows(), [items](int row) {
    return QString::fromStdString(items->item(static_cast<std::size_t>(row)).title.value_or(std::string()));
  });
  return true;
}

QString TableNode::letter(int row) const {
  return firstLetter(content(row).title);
}

}  // namespace qtquick
