#include "platform/uikit/UITableViewCell.h"

UITableViewCell::UITableViewCell(UITableViewCellStyle style, std::string reuseIdentifier)
    : reuseIdentifier_(std::move(reuseIdentifier)),
      detailTextLabel_(style == UITableViewCellStyle::Default ? nullptr : make<UILabel>()) {}
