#include "platform/coregraphics/UIGraphics.h"

#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace {

std::vector<std::unique_ptr<CGContext>>& contexts() {
  static std::vector<std::unique_ptr<CGContext>> stack;
  return stack;
}

std::string hexadecimal(double component) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto value = static_cast<unsigned>(std::lround(component * 255));
  return {digits[value >> 4U], digits[value & 0xFU]};
}

}  // namespace

void UIGraphicsBeginImageContext(CGSize size) {
  contexts().push_back(std::make_unique<CGContext>(CGContext{.size = size, .filled = std::nullopt}));
}

CGContextRef UIGraphicsGetCurrentContext() {
  return contexts().empty() ? nullptr : contexts().back().get();
}

void CGContextFillRect(CGContextRef context, CGRect rect) {
  const bool covers = rect.origin.x <= 0 && rect.origin.y <= 0 &&
                      rect.origin.x + rect.size.width >= context->size.width &&
                      rect.origin.y + rect.size.height >= context->size.height;
  if (covers) context->filled = context->fillColor;
}

Strong<UIImage> UIGraphicsGetImageFromCurrentImageContext() {
  const auto* context = UIGraphicsGetCurrentContext();
  if (context == nullptr || !context->filled) return nullptr;
  const UIColor colour = *context->filled;
  return make<UIImage>("color:#" + hexadecimal(colour.red) + hexadecimal(colour.green) + hexadecimal(colour.blue) +
                           hexadecimal(colour.alpha),
                       context->size);
}

void UIGraphicsEndImageContext() {
  if (!contexts().empty()) contexts().pop_back();
}
