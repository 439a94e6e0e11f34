#include "hosts/qtquick/TableNode.h"

#include "hosts/qtquick/Pictures.h"
#include "platform/foundation/RunLoop.h"

namespace qtquick {

namespace {

QString textOf(const Strong<UILabel>& label) {
  return label ? QString::fromStdString(label->text().value_or(std::string())) : QString();
}

}  // namespace

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
  content.color = colour(cell->contentView()->backgroundColor());
  content.titleColor = colour(cell->textLabel()->textColor());
  if (cell->detailTextLabel()) content.detailColor = colour(cell->detailTextLabel()->textColor());
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

}  // namespace qtquick
